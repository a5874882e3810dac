#pragma once

#include "app/bridge/AppListModel.h"
#include "app/bridge/Coalescer.h"
#include "app/bridge/LevelClock.h"
#include "app/popover/MasterSlider.h"
#include "app/popover/PanelState.h"
#include "core/platform/Platform.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <memory>
#include <vector>

namespace orvanta {

/// The mixer as the views see it. Whatever changes in the model within a turn of the main run loop
/// reaches the views as one update after it; what moves with the sound comes by the clock.
class MixerBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one.")
    Q_PROPERTY(orvanta::AppListModel* apps READ apps CONSTANT)
    Q_PROPERTY(orvanta::LevelClock* clock READ clock CONSTANT)

    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(bool hasTaps READ hasTaps NOTIFY changed)
    Q_PROPERTY(QString appCount READ appCount NOTIFY changed)
    /// Empty for none, as is the next.
    Q_PROPERTY(QString tappedCount READ tappedCount NOTIFY changed)
    Q_PROPERTY(QString playingCount READ playingCount NOTIFY changed)

    Q_PROPERTY(bool isAutoTapOn READ isAutoTapOn NOTIFY changed)
    Q_PROPERTY(QString autoTapSymbol READ autoTapSymbol NOTIFY changed)
    Q_PROPERTY(QString autoTapHelp READ autoTapHelp CONSTANT)
    Q_PROPERTY(QString autoTapHint READ autoTapHint NOTIFY changed)

    Q_PROPERTY(double masterVolume READ masterVolume NOTIFY masterChanged)
    Q_PROPERTY(QString masterSymbol READ masterSymbol NOTIFY changed)
    Q_PROPERTY(QString masterReadOut READ masterReadOut NOTIFY masterChanged)
    Q_PROPERTY(QString masterValue READ masterValue NOTIFY masterChanged)

    Q_PROPERTY(bool isMasterMuted READ isMasterMuted NOTIFY changed)
    Q_PROPERTY(QString muteAllSymbol READ muteAllSymbol NOTIFY changed)
    Q_PROPERTY(QString muteAllText READ muteAllText NOTIFY changed)
    Q_PROPERTY(QString muteAllLabel READ muteAllLabel NOTIFY changed)

    Q_PROPERTY(bool launchesAtLogin READ launchesAtLogin NOTIFY changed)
    Q_PROPERTY(QString launchAtLoginSymbol READ launchAtLoginSymbol NOTIFY changed)

    /// Each with `uid` and `name`.
    Q_PROPERTY(QVariantList outputs READ outputs NOTIFY outputsChanged)

public:
    /// What `platform` refers to must outlive it.
    MixerBridge(std::shared_ptr<MixerViewModel> model, const Platform& platform);
    ~MixerBridge() override;

    [[nodiscard]] AppListModel* apps() { return &apps_; }

    [[nodiscard]] LevelClock* clock() { return &clock_; }

    /// Whether anybody can see the panel.
    void setPanelVisible(bool isVisible);

    /// Folds its rows.
    void panelClosed() { apps_.foldAll(); }

    [[nodiscard]] bool isEmpty() const { return state_.apps == 0; }

    [[nodiscard]] bool hasTaps() const { return state_.tapped != 0; }

    [[nodiscard]] QString appCount() const;
    [[nodiscard]] QString tappedCount() const;
    [[nodiscard]] QString playingCount() const;

    [[nodiscard]] bool isAutoTapOn() const { return state_.isAutoTapOn; }

    [[nodiscard]] QString autoTapSymbol() const;
    [[nodiscard]] static QString autoTapHelp();
    [[nodiscard]] QString autoTapHint() const;
    Q_INVOKABLE void toggleAutoTap();

    [[nodiscard]] double masterVolume() const { return static_cast<double>(master_.volume()); }

    [[nodiscard]] QString masterSymbol() const;
    [[nodiscard]] QString masterReadOut() const;
    [[nodiscard]] QString masterValue() const;
    Q_INVOKABLE void beginMasterDrag();
    Q_INVOKABLE void moveMaster(double volume);
    Q_INVOKABLE void endMasterDrag();

    [[nodiscard]] bool isMasterMuted() const { return state_.isMasterMuted; }

    [[nodiscard]] QString muteAllSymbol() const;
    [[nodiscard]] QString muteAllText() const;
    [[nodiscard]] QString muteAllLabel() const;
    Q_INVOKABLE void toggleMuteAll();

    [[nodiscard]] bool launchesAtLogin() const { return state_.launchesAtLogin; }

    [[nodiscard]] QString launchAtLoginSymbol() const;
    /// Flips the model's value and tells who acts on it.
    Q_INVOKABLE void toggleLaunchAtLogin();

    [[nodiscard]] QVariantList outputs() const;

Q_SIGNALS:
    void changed();
    void masterChanged();
    void outputsChanged();
    void launchAtLoginAsked(bool isOn);

private:
    template <class... Values>
    void watch(Published<Values>&... published);
    void update();
    void updateOutputs();
    void updateClock();
    void scheduleExpiry();

    const std::shared_ptr<MixerViewModel> model_;
    RunLoop& mainRunLoop_;
    /// Devices may take their time.
    const std::unique_ptr<SerialQueue> masterQueue_;
    AppListModel apps_;
    LevelClock clock_;
    MasterSlider master_;
    PanelState state_;
    bool isPanelVisible_ = false;
    std::vector<OutputDevice> outputs_;
    Coalescer coalescer_;
    Coalescer elapsed_;
    /// Looks again when time alone has moved a row.
    std::unique_ptr<RepeatingTimer> expiry_;
    std::vector<Observation> observations_;
};

} // namespace orvanta
