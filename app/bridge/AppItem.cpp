#include "app/bridge/AppItem.h"

#include "app/bridge/Text.h"
#include "app/popover/CompressorField.h"
#include "app/popover/LevelColors.h"
#include "app/popover/PanelText.h"
#include "app/popover/RowText.h"
#include "core/dsp/EQBand.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvanta {
namespace {

/// Steps of a bar that is told anew: finer than its pixels, coarser than its every tremble.
constexpr double kReductionSteps = 80.0;

std::size_t asIndex(int index) {
    return static_cast<std::size_t>(index);
}

} // namespace

AppItem::AppItem(std::shared_ptr<MixerViewModel> model, const AudioApp& app, Seconds now)
    : model_(std::move(model)),
      app_(app),
      state_(rowStateOf(*model_, app, now)),
      slider_([this](float volume) {
          // A hand may hold on for longer than the tap lasts.
          if (model_->isTapped(pid()))
              model_->setVolume(pid(), volume);
      }) {
    slider_.follow(state_.volume);
    updateElapsed();
}

void AppItem::update(const AudioApp& app, Seconds now) {
    app_ = app;
    RowState next = rowStateOf(*model_, app_, now);
    updateElapsed();
    state_.volume = next.volume;
    if (next == state_) {
        followVolume(next.volume);
        return;
    }
    const bool isTapNew = next.isTapped != state_.isTapped;
    const bool isRecordingNew = next.isRecording != state_.isRecording;
    state_ = std::move(next);
    // A tap begins and ends with its row folded, and with no hand on it.
    if (isTapNew) {
        slider_.abandonDrag();
        fold();
    }
    followVolume(state_.volume);
    if (isTapNew || isRecordingNew)
        Q_EMIT unfolding();
    Q_EMIT changed();
    if (isRecordingNew)
        Q_EMIT elapsedChanged();
}

void AppItem::followVolume(float volume) {
    const float shown = slider_.volume();
    slider_.follow(volume);
    if (slider_.volume() != shown)
        Q_EMIT volumeChanged();
}

void AppItem::tick() {
    if (!state_.isTapped)
        return;
    updateGate();
    updateReductions();
}

double AppItem::level() const {
    return state_.isMuted ? 0.0 : static_cast<double>(model_->audioLevel(pid()));
}

QString AppItem::name() const {
    return qText(state_.name);
}

QString AppItem::iconKey() const {
    return state_.icon ? qText(state_.icon->cacheKey()) : QString();
}

QUrl AppItem::iconFile(int pixels) const {
    if (!state_.icon)
        return {};
    const auto file = state_.icon->imageFile(pixels);
    return file ? QUrl::fromLocalFile(qText(file->string())) : QUrl();
}

QString AppItem::tapHelp() const {
    return qText(rowText::tapHelp(isTapped()));
}

QString AppItem::tapLabel() const {
    return qText(rowText::tapLabel(state_.name, isTapped()));
}

QString AppItem::tapHint() const {
    return qText(rowText::tapHint(isTapped()));
}

void AppItem::toggleTap() {
    model_->toggleTap(app_);
}

QString AppItem::recordHelp() const {
    return qText(rowText::recordHelp(isRecording()));
}

QString AppItem::recordLabel() const {
    return qText(rowText::recordLabel(state_.name, isRecording()));
}

QString AppItem::recordValue() const {
    return qText(rowText::recordValue(isRecording(), elapsedSeconds_));
}

QString AppItem::elapsedTime() const {
    return qText(rowText::elapsedTime(elapsedSeconds_));
}

void AppItem::toggleRecording() {
    model_->toggleRecording(pid());
}

QString AppItem::muteSymbol() const {
    return qText(rowText::muteSymbol(isMuted()));
}

QString AppItem::muteHelp() const {
    return qText(rowText::muteHelp(isMuted()));
}

QString AppItem::muteLabel() const {
    return qText(rowText::muteLabel(state_.name, isMuted()));
}

void AppItem::toggleMute() {
    model_->toggleMute(pid());
}

QString AppItem::volumeColor() const {
    return qText(orvanta::volumeColor(slider_.volume()));
}

QString AppItem::volumeReadOut() const {
    return qText(panelText::percentReadOut(slider_.volume()));
}

QString AppItem::volumeLabel() const {
    return qText(rowText::volumeLabel(state_.name));
}

QString AppItem::volumeValue() const {
    return qText(rowText::volumeValue(slider_.volume()));
}

void AppItem::beginVolumeDrag() {
    slider_.beginDrag();
}

void AppItem::moveVolume(double volume) {
    slider_.move(static_cast<float>(volume));
    Q_EMIT volumeChanged();
}

void AppItem::endVolumeDrag() {
    slider_.endDrag();
    Q_EMIT volumeChanged();
}

QString AppItem::outputUID() const {
    return qText(state_.outputUID.value_or(std::string()));
}

QString AppItem::outputLabel() const {
    return qText(rowText::outputLabel(state_.name));
}

void AppItem::route(const QString& uid) {
    model_->routeApp(pid(), uid.isEmpty() ? std::nullopt : std::optional(uid.toStdString()));
}

QString AppItem::equalizerHint() const {
    return qText(rowText::expansionHint(isEQExpanded()));
}

QString AppItem::modeText() const {
    return qText(rowText::modeText(isAdvancedEQ()));
}

QString AppItem::modeLabel() const {
    return qText(rowText::modeLabel(isAdvancedEQ()));
}

QString AppItem::equalizerLabel() const {
    return qText(rowText::equalizerLabel(state_.name));
}

QString AppItem::equalizerValue() const {
    return qText(rowText::equalizerValue(state_.eq));
}

int AppItem::equalizerPreset() const {
    const auto presets = EQPreset::allNamedPresets();
    const auto found = std::ranges::find(presets, state_.eq, &NamedEQPreset::preset);
    return found == presets.end() ? -1 : static_cast<int>(found - presets.begin());
}

QList<double> AppItem::gains() const {
    return {state_.eq.gains.begin(), state_.eq.gains.end()};
}

QStringList AppItem::bandLabels() const {
    QStringList labels;
    for (std::size_t band = 0; band < kEQLabels.size(); ++band)
        labels.append(qText(rowText::bandLabel(band, state_.name)));
    return labels;
}

void AppItem::toggleEQ() {
    RowExpansion next = expansion_;
    next.isEQExpanded = !next.isEQExpanded;
    expand(next);
}

void AppItem::toggleEQMode() {
    RowExpansion next = expansion_;
    next.isAdvancedEQ = !next.isAdvancedEQ;
    expand(next);
}

void AppItem::setGain(int band, double gain) {
    model_->setEQ(pid(), band, static_cast<float>(gain));
}

void AppItem::applyEQPreset(int index) {
    const auto presets = EQPreset::allNamedPresets();
    if (index < 0 || asIndex(index) >= presets.size())
        return;
    const EQPreset& preset = presets[asIndex(index)].preset;
    for (int band = 0; band < kEQBandCount; ++band)
        model_->setEQ(pid(), band, preset.gains.at(asIndex(band)));
}

void AppItem::resetEQ() {
    model_->resetEQ(pid());
}

QString AppItem::balanceLabel() const {
    return qText(rowText::balanceLabel(state_.name));
}

void AppItem::setBalance(double balance) {
    model_->setBalance(pid(), static_cast<float>(balance));
}

QString AppItem::gateLabel() const {
    return qText(rowText::gateLabel(state_.name));
}

QString AppItem::gateHelp() const {
    return qText(rowText::gateHelp(isGateOpen_));
}

void AppItem::setGateEnabled(bool isEnabled) {
    model_->setNoiseGate(pid(), isEnabled, state_.gateThreshold);
}

void AppItem::setGateThreshold(double threshold) {
    model_->setNoiseGate(pid(), state_.isGateEnabled, static_cast<float>(threshold));
}

QString AppItem::compressorPreset() const {
    return qText(compressorPresetName(state_.compressor));
}

QString AppItem::compressorLabel() const {
    return qText(rowText::compressorLabel(state_.name));
}

QList<double> AppItem::compressorValues() const {
    QList<double> values;
    for (const CompressorBandSettings& band : state_.compressor.bands)
        for (const CompressorField& field : kCompressorFields)
            values.append(static_cast<double>(field.valueIn(band)));
    return values;
}

void AppItem::toggleCompressorAdvanced() {
    RowExpansion next = expansion_;
    next.isCompressorAdvanced = !next.isCompressorAdvanced;
    expand(next);
}

void AppItem::applyCompressorPreset(int index) {
    const auto presets = CompressorPreset::allPresets();
    if (index >= 0 && asIndex(index) < presets.size())
        model_->setCompressor(pid(), presets[asIndex(index)].preset);
}

void AppItem::setCompressorValue(int band, int field, double value) {
    CompressorPreset preset = model_->getCompressor(pid());
    if (band < 0 || asIndex(band) >= preset.bands.size() || field < 0 ||
        asIndex(field) >= kCompressorFields.size())
        return;
    kCompressorFields.at(asIndex(field))
        .setValueIn(preset.bands.at(asIndex(band)), static_cast<float>(value));
    model_->setCompressor(pid(), std::move(preset));
}

void AppItem::expand(RowExpansion expansion) {
    if (std::exchange(expansion_, expansion) == expansion)
        return;
    Q_EMIT unfolding();
    Q_EMIT expansionChanged();
}

void AppItem::updateElapsed() {
    const int seconds = static_cast<int>(valueOr(model_->recordingDurations.get(), pid(), 0.0));
    if (std::exchange(elapsedSeconds_, seconds) != seconds)
        Q_EMIT elapsedChanged();
}

void AppItem::updateGate() {
    const bool isOpen = !state_.isGateEnabled || model_->isNoiseGateOpen(pid());
    if (std::exchange(isGateOpen_, isOpen) != isOpen)
        Q_EMIT gateMoved();
}

void AppItem::updateReductions() {
    if (!expansion_.isCompressorAdvanced)
        return;
    QList<double> shares;
    for (const float reduction : valueOr(model_->compressorGainReduction.get(), pid(), {}))
        shares.append(std::round(reductionShare(reduction) * kReductionSteps) / kReductionSteps);
    if (std::exchange(reductions_, shares) != shares)
        Q_EMIT reductionsMoved();
}

} // namespace orvanta
