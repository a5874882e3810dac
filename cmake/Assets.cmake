# What the views draw with and is not written here: packages, fetched once for all builds into
# build/assets/<package>/, and fonts, which each build makes. Sets ORVANTA_ICON_FONT,
# ORVANTA_ICON_PICTURES and ORVANTA_MADE_FONTS.
set(assets ${PROJECT_SOURCE_DIR}/build/assets)

execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/fetch-assets.sh COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/assets/packages)
set(ORVANTA_ICON_FONT ${assets}/framework7-icons/fonts/Framework7Icons-Regular.ttf)
set(ORVANTA_ICON_PICTURES ${assets}/framework7-icons/svg)

# orvanta_make_font(KIND WEIGHT): "Text" or "Figures", cut out of Inter.
set(inter /usr/share/fonts/opentype/inter)
function(orvanta_make_font kind weight)
    set(script ${PROJECT_SOURCE_DIR}/scripts/make-font.py)
    set(font ${CMAKE_BINARY_DIR}/fonts/Orvanta${kind}-${weight}.ttf)
    string(TOLOWER ${kind} argument)
    # The Python that Debian's fonttools belongs to.
    add_custom_command(OUTPUT ${font}
        COMMAND /usr/bin/python3 ${script} ${argument} ${inter}/Inter-${weight}.otf ${font}
        DEPENDS ${script} ${inter}/Inter-${weight}.otf)
    list(APPEND ORVANTA_MADE_FONTS ${font})
    set(ORVANTA_MADE_FONTS ${ORVANTA_MADE_FONTS} PARENT_SCOPE)
endfunction()

foreach(weight Regular Medium SemiBold Bold)
    orvanta_make_font(Text ${weight})
endforeach()
foreach(weight Medium SemiBold)
    orvanta_make_font(Figures ${weight})
endforeach()
# Whoever uses the fonts in another directory waits for this.
add_custom_target(orvanta_made_fonts DEPENDS ${ORVANTA_MADE_FONTS})
