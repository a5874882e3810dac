#include "app/bridge/RowValues.h"

#include "app/bridge/Text.h"
#include "app/popover/CompressorField.h"
#include "app/popover/EQPresetGroup.h"
#include "app/popover/RowText.h"
#include "core/dsp/EQBand.h"

#include <cmath>

namespace orvanta {
namespace {

/// Where a frequency stands on the response line's axis, 0 to 1.
double shareOf(double frequency) {
    return std::log(frequency / 20.0) / std::log(1000.0);
}

const CompressorField& compressorField(int field) {
    return kCompressorFields.at(static_cast<std::size_t>(field));
}

} // namespace

QVariantList RowValues::equalizerPresets() {
    QVariantList entries;
    for (const EQPresetGroup& group : kEQPresetGroups) {
        QString heading = qText(group.heading);
        for (const NamedEQPreset& preset : group.presets()) {
            entries.append(QVariantMap{
                {"name", qText(preset.name)}, {"emoji", qText(preset.icon)}, {"heading", heading}});
            heading = u""_qs;
        }
    }
    return entries;
}

QVariantList RowValues::simpleBands() {
    QVariantList entries;
    for (const EQSimpleBand band : kEQSimpleBands)
        entries.append(QVariantMap{{"text", qText(rowText::simpleBandText(band))},
                                   {"band", static_cast<int>(band)}});
    return entries;
}

QVariantList RowValues::bands() {
    QVariantList entries;
    for (std::size_t band = 0; band < kEQLabels.size(); ++band)
        entries.append(
            QVariantMap{{"label", qText(kEQLabels.at(band))},
                        {"share", shareOf(static_cast<double>(kEQFrequencies.at(band)))}});
    return entries;
}

QStringList RowValues::compressorPresets() {
    QStringList names;
    for (const NamedCompressorPreset& preset : CompressorPreset::allPresets())
        names.append(qText(preset.name));
    return names;
}

QVariantList RowValues::compressorFields() {
    QVariantList entries;
    for (const CompressorField& field : kCompressorFields)
        entries.append(QVariantMap{{"label", qText(field.label)},
                                   {"accessibleLabel", qText(field.accessibleLabel())},
                                   {"minimum", static_cast<double>(field.minimum)},
                                   {"maximum", static_cast<double>(field.maximum)},
                                   {"step", static_cast<double>(field.step)}});
    return entries;
}

double RowValues::fullReduction() {
    return static_cast<double>(kFullReductionDB);
}

QString RowValues::expansionHint(bool isExpanded) {
    return qText(rowText::expansionHint(isExpanded));
}

QString RowValues::gainReadOut(double gain) {
    return qText(rowText::gainReadOut(static_cast<float>(gain)));
}

QString RowValues::gainValue(double gain) {
    return qText(rowText::gainValue(static_cast<float>(gain)));
}

bool RowValues::isGainLit(double gain) {
    return rowText::isGainLit(static_cast<float>(gain));
}

QVariantMap RowValues::balanceWords(double balance) {
    const auto value = static_cast<float>(balance);
    return {{"value", qText(rowText::balanceValue(value))},
            {"readOut", qText(rowText::balanceReadOut(value))},
            {"isLeftLit", rowText::isLeftLit(value)},
            {"isRightLit", rowText::isRightLit(value)}};
}

QString RowValues::thresholdReadOut(double threshold) {
    return qText(rowText::thresholdReadOut(static_cast<float>(threshold)));
}

QString RowValues::thresholdValue(double threshold) {
    return qText(rowText::thresholdValue(static_cast<float>(threshold)));
}

QString RowValues::compressorReadOut(int field, double value) {
    return qText(compressorField(field).readOut(static_cast<float>(value)));
}

QString RowValues::compressorValue(int field, double value) {
    return qText(compressorField(field).accessibleValue(static_cast<float>(value)));
}

} // namespace orvanta
