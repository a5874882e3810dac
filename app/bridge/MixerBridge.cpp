#include "app/bridge/MixerBridge.h"

#include "app/bridge/Text.h"
#include "app/popover/PanelText.h"

#include <algorithm>
#include <utility>

namespace orvanta {
namespace {

/// Equal UIDs are equal devices, but a new name is to be seen.
bool looksTheSame(const std::vector<OutputDevice>& a, const std::vector<OutputDevice>& b) {
    return std::ranges::equal(a, b, [](const OutputDevice& one, const OutputDevice& other) {
        return one.uid == other.uid && one.name == other.name;
    });
}

} // namespace

MixerBridge::MixerBridge(std::shared_ptr<MixerViewModel> model, const Platform& platform)
    : model_(std::move(model)),
      mainRunLoop_(platform.mainRunLoop),
      masterQueue_(platform.serialQueues.make("com.meridane.orvanta.masterVolume",
                                              QualityOfService::userInteractive)),
      apps_(model_),
      clock_(mainRunLoop_),
      master_({.applyToDevices =
                   [this](float volume) {
                       masterQueue_->post(model_->masterVolumeToDevicesTask(volume));
                   },
               .setMasterVolume =
                   [this](float volume) {
                       model_->setMasterVolume(volume);
                   }}),
      coalescer_(mainRunLoop_, [this] { update(); }),
      elapsed_(mainRunLoop_, [this] { apps_.updateElapsed(); }) {
    watch(model_->audioApps, model_->tappedPIDs, model_->volumes, model_->mutedPIDs,
          model_->masterVolume, model_->autoTapEnabled, model_->appOutputDevices,
          model_->eqSettings, model_->isMasterMuted, model_->launchAtLogin, model_->balances,
          model_->compressorSettings, model_->recordingPIDs, model_->noiseGateEnabled,
          model_->noiseGateThresholds);
    // At each poll of the levels.
    observations_.push_back(
        model_->recordingDurations.observe([this](const auto&) { elapsed_.ask(); }));
    observations_.push_back(model_->outputDeviceManager().observe([this] { coalescer_.ask(); }));
    connect(&clock_, &LevelClock::ticked, &apps_, &AppListModel::tick);
    update();
}

MixerBridge::~MixerBridge() = default;

template <class... Values>
void MixerBridge::watch(Published<Values>&... published) {
    (observations_.push_back(published.observe([this](const Values&) { coalescer_.ask(); })), ...);
}

void MixerBridge::update() {
    const PanelState next = panelStateOf(*model_);
    master_.follow(next.masterVolume);
    const bool isNew = std::exchange(state_, next) != next;
    apps_.update(mainRunLoop_.now());
    updateOutputs();
    updateClock();
    scheduleExpiry();
    if (isNew) {
        Q_EMIT changed();
        Q_EMIT masterChanged();
    }
}

void MixerBridge::updateOutputs() {
    const auto& devices = model_->outputDeviceManager().availableDevices();
    if (looksTheSame(outputs_, devices))
        return;
    outputs_ = devices;
    Q_EMIT outputsChanged();
}

void MixerBridge::scheduleExpiry() {
    // Nobody sees the sections of a closed panel.
    const auto next = isPanelVisible_ ? apps_.nextExpiry() : std::nullopt;
    expiry_ = nullptr;
    if (!next)
        return;
    constexpr Seconds kSoonest{0.001};
    expiry_ = mainRunLoop_.repeat(std::max(*next - mainRunLoop_.now(), kSoonest),
                                  [this] { coalescer_.ask(); });
}

void MixerBridge::setPanelVisible(bool isVisible) {
    isPanelVisible_ = isVisible;
    model_->setPopoverVisible(isVisible);
    coalescer_.ask();
    updateClock();
}

void MixerBridge::updateClock() {
    // Meters are of taps.
    clock_.setRunning(isPanelVisible_ && hasTaps());
}

QString MixerBridge::appCount() const {
    return qText(panelText::appCount(state_.apps));
}

QString MixerBridge::tappedCount() const {
    return state_.tapped == 0 ? QString() : qText(panelText::tappedCount(state_.tapped));
}

QString MixerBridge::playingCount() const {
    return state_.playing == 0 ? QString() : qText(panelText::playingCount(state_.playing));
}

QString MixerBridge::autoTapSymbol() const {
    return qText(panelText::autoTapSymbol(isAutoTapOn()));
}

QString MixerBridge::autoTapHelp() {
    return qText(panelText::autoTapHelp);
}

QString MixerBridge::autoTapHint() const {
    return qText(panelText::autoTapHint(isAutoTapOn()));
}

void MixerBridge::toggleAutoTap() {
    const bool isOn = !model_->autoTapEnabled.get();
    model_->autoTapEnabled.set(isOn);
    if (isOn)
        model_->refreshApps();
}

QString MixerBridge::masterSymbol() const {
    return qText(panelText::masterSymbol(state_.masterVolume));
}

QString MixerBridge::masterReadOut() const {
    return qText(panelText::percentReadOut(master_.volume()));
}

QString MixerBridge::masterValue() const {
    return qText(panelText::masterVolumeValue(master_.volume()));
}

void MixerBridge::beginMasterDrag() {
    master_.beginDrag();
}

void MixerBridge::moveMaster(double volume) {
    master_.move(static_cast<float>(volume), mainRunLoop_.now());
    Q_EMIT masterChanged();
}

void MixerBridge::endMasterDrag() {
    master_.endDrag();
    // Behind what the drag has left in the queue: slow devices end where the hand did.
    masterQueue_->post(model_->masterVolumeToDevicesTask(master_.volume()));
    Q_EMIT masterChanged();
}

QString MixerBridge::muteAllSymbol() const {
    return qText(panelText::muteAllSymbol(isMasterMuted()));
}

QString MixerBridge::muteAllText() const {
    return qText(panelText::muteAllText(isMasterMuted()));
}

QString MixerBridge::muteAllLabel() const {
    return qText(panelText::muteAllLabel(isMasterMuted()));
}

void MixerBridge::toggleMuteAll() {
    model_->toggleMuteAll();
}

QString MixerBridge::launchAtLoginSymbol() const {
    return qText(panelText::launchAtLoginSymbol(launchesAtLogin()));
}

void MixerBridge::toggleLaunchAtLogin() {
    const bool isOn = !model_->launchAtLogin.get();
    model_->launchAtLogin.set(isOn);
    Q_EMIT launchAtLoginAsked(isOn);
}

QVariantList MixerBridge::outputs() const {
    QVariantList entries;
    for (const OutputDevice& device : outputs_)
        entries.append(QVariantMap{{"uid", qText(device.uid)}, {"name", qText(device.name)}});
    return entries;
}

} // namespace orvanta
