# What the views draw with and is not written here, fetched or made once for all builds:
# build/assets/<package>/ and the fonts below. Sets ORVANTA_ICON_FONT, ORVANTA_ICON_PICTURES and
# ORVANTA_FIGURE_FONTS.
set(assets ${PROJECT_SOURCE_DIR}/build/assets)

execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/fetch-assets.sh COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/assets/packages)
set(ORVANTA_ICON_FONT ${assets}/framework7-icons/fonts/Framework7Icons-Regular.ttf)
set(ORVANTA_ICON_PICTURES ${assets}/framework7-icons/svg)

# The Python that Debian's fonttools belongs to.
set(figures ${PROJECT_SOURCE_DIR}/scripts/make-figure-font.py)
foreach(weight Regular Medium SemiBold)
    set(font ${CMAKE_BINARY_DIR}/fonts/OrvantaFigures-${weight}.otf)
    set(source /usr/share/fonts/opentype/inter/Inter-${weight}.otf)
    add_custom_command(OUTPUT ${font}
        COMMAND /usr/bin/python3 ${figures} ${source} ${font}
        DEPENDS ${figures} ${source})
    list(APPEND ORVANTA_FIGURE_FONTS ${font})
endforeach()
# Whoever uses the fonts in another directory waits for this.
add_custom_target(orvanta_figure_fonts DEPENDS ${ORVANTA_FIGURE_FONTS})
