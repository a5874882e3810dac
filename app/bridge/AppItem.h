#pragma once

#include "app/popover/RowExpansion.h"
#include "app/popover/RowState.h"
#include "app/popover/VolumeSlider.h"
#include "core/discovery/AudioApp.h"
#include "core/model/MixerViewModel.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace orvanta {

/// An application as the views see it: what its row shows, in words and numbers, and what its
/// controls do. It tells of changes only where the row would look different.
class AppItem final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The mixer has one for each application.")
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString iconKey READ iconKey NOTIFY changed)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY changed)
    Q_PROPERTY(bool isRecentlyActive READ isRecentlyActive NOTIFY changed)

    Q_PROPERTY(bool isTapped READ isTapped NOTIFY changed)
    Q_PROPERTY(QString tapHelp READ tapHelp NOTIFY changed)
    Q_PROPERTY(QString tapLabel READ tapLabel NOTIFY changed)
    Q_PROPERTY(QString tapHint READ tapHint NOTIFY changed)

    Q_PROPERTY(bool isRecording READ isRecording NOTIFY changed)
    Q_PROPERTY(QString recordHelp READ recordHelp NOTIFY changed)
    Q_PROPERTY(QString recordLabel READ recordLabel NOTIFY changed)
    Q_PROPERTY(QString recordValue READ recordValue NOTIFY elapsedChanged)
    Q_PROPERTY(QString elapsedTime READ elapsedTime NOTIFY elapsedChanged)

    Q_PROPERTY(bool isMuted READ isMuted NOTIFY changed)
    Q_PROPERTY(QString muteSymbol READ muteSymbol NOTIFY changed)
    Q_PROPERTY(QString muteHelp READ muteHelp NOTIFY changed)
    Q_PROPERTY(QString muteLabel READ muteLabel NOTIFY changed)
    Q_PROPERTY(double volume READ volume NOTIFY volumeChanged)
    Q_PROPERTY(QString volumeColor READ volumeColor NOTIFY volumeChanged)
    Q_PROPERTY(QString volumeReadOut READ volumeReadOut NOTIFY volumeChanged)
    Q_PROPERTY(QString volumeLabel READ volumeLabel NOTIFY changed)
    Q_PROPERTY(QString volumeValue READ volumeValue NOTIFY volumeChanged)

    /// Empty for the system's default.
    Q_PROPERTY(QString outputUID READ outputUID NOTIFY changed)
    Q_PROPERTY(QString outputLabel READ outputLabel NOTIFY changed)

    Q_PROPERTY(bool isEQExpanded READ isEQExpanded NOTIFY expansionChanged)
    Q_PROPERTY(bool isAdvancedEQ READ isAdvancedEQ NOTIFY expansionChanged)
    Q_PROPERTY(QString equalizerHint READ equalizerHint NOTIFY expansionChanged)
    Q_PROPERTY(QString modeText READ modeText NOTIFY expansionChanged)
    Q_PROPERTY(QString modeLabel READ modeLabel NOTIFY expansionChanged)
    Q_PROPERTY(bool isEQFlat READ isEQFlat NOTIFY changed)
    Q_PROPERTY(QString equalizerLabel READ equalizerLabel NOTIFY changed)
    Q_PROPERTY(QString equalizerValue READ equalizerValue NOTIFY changed)
    /// Which of the named presets it is; -1 for none.
    Q_PROPERTY(int equalizerPreset READ equalizerPreset NOTIFY changed)
    /// Of ten bands: dB, and the accessible names of their faders.
    Q_PROPERTY(QList<double> gains READ gains NOTIFY changed)
    Q_PROPERTY(QStringList bandLabels READ bandLabels NOTIFY changed)

    Q_PROPERTY(double balance READ balance NOTIFY changed)
    Q_PROPERTY(QString balanceLabel READ balanceLabel NOTIFY changed)

    Q_PROPERTY(bool isGateEnabled READ isGateEnabled NOTIFY changed)
    Q_PROPERTY(double gateThreshold READ gateThreshold NOTIFY changed)
    Q_PROPERTY(QString gateLabel READ gateLabel NOTIFY changed)
    Q_PROPERTY(bool isGateOpen READ isGateOpen NOTIFY gateMoved)
    Q_PROPERTY(QString gateHelp READ gateHelp NOTIFY gateMoved)

    Q_PROPERTY(bool isCompressorOff READ isCompressorOff NOTIFY changed)
    Q_PROPERTY(QString compressorPreset READ compressorPreset NOTIFY changed)
    Q_PROPERTY(QString compressorLabel READ compressorLabel NOTIFY changed)
    Q_PROPERTY(bool isCompressorAdvanced READ isCompressorAdvanced NOTIFY expansionChanged)
    /// Of each band in turn, the quantities from `kCompressorFields`.
    Q_PROPERTY(QList<double> compressorValues READ compressorValues NOTIFY changed)
    /// Of each band, share of its bar.
    Q_PROPERTY(QList<double> reductions READ reductions NOTIFY reductionsMoved)

public:
    AppItem(std::shared_ptr<MixerViewModel> model, const AudioApp& app, Seconds now);

    [[nodiscard]] std::int32_t pid() const { return app_.pid; }

    [[nodiscard]] const RowState& state() const { return state_; }

    /// Takes up what the model has now. `app` has the same process id.
    void update(const AudioApp& app, Seconds now);
    /// Takes up what moves by itself while the row is shown.
    void tick();
    /// Takes up how long it has been recorded.
    void updateElapsed();

    void fold() { expand({}); }

    /// Rows hold on to it: it is not to end under them.
    void hold() { ++holds_; }

    void letGo() { --holds_; }

    [[nodiscard]] bool isHeld() const { return holds_ > 0; }

    /// What a meter aims at, 0 to 1.
    [[nodiscard]] double level() const;

    [[nodiscard]] QString name() const;
    [[nodiscard]] QString iconKey() const;

    [[nodiscard]] bool isPlaying() const { return state_.section == AppSection::playing; }

    [[nodiscard]] bool isRecentlyActive() const {
        return state_.section == AppSection::recentlyActive;
    }

    /// A file to draw the icon from, in a square of so many pixels; empty where there is none.
    Q_INVOKABLE [[nodiscard]] QUrl iconFile(int pixels) const;

    [[nodiscard]] bool isTapped() const { return state_.isTapped; }

    [[nodiscard]] QString tapHelp() const;
    [[nodiscard]] QString tapLabel() const;
    [[nodiscard]] QString tapHint() const;
    Q_INVOKABLE void toggleTap();

    [[nodiscard]] bool isRecording() const { return state_.isRecording; }

    [[nodiscard]] QString recordHelp() const;
    [[nodiscard]] QString recordLabel() const;
    [[nodiscard]] QString recordValue() const;
    [[nodiscard]] QString elapsedTime() const;
    Q_INVOKABLE void toggleRecording();

    [[nodiscard]] bool isMuted() const { return state_.isMuted; }

    [[nodiscard]] QString muteSymbol() const;
    [[nodiscard]] QString muteHelp() const;
    [[nodiscard]] QString muteLabel() const;
    Q_INVOKABLE void toggleMute();

    [[nodiscard]] double volume() const { return static_cast<double>(slider_.volume()); }

    [[nodiscard]] QString volumeColor() const;
    [[nodiscard]] QString volumeReadOut() const;
    [[nodiscard]] QString volumeLabel() const;
    [[nodiscard]] QString volumeValue() const;
    Q_INVOKABLE void beginVolumeDrag();
    Q_INVOKABLE void moveVolume(double volume);
    Q_INVOKABLE void endVolumeDrag();

    [[nodiscard]] QString outputUID() const;
    [[nodiscard]] QString outputLabel() const;
    /// Empty for the system's default.
    Q_INVOKABLE void route(const QString& uid);

    [[nodiscard]] bool isEQExpanded() const { return expansion_.isEQExpanded; }

    [[nodiscard]] bool isAdvancedEQ() const { return expansion_.isAdvancedEQ; }

    [[nodiscard]] QString equalizerHint() const;
    [[nodiscard]] QString modeText() const;
    [[nodiscard]] QString modeLabel() const;

    [[nodiscard]] bool isEQFlat() const { return state_.eq.isFlat(); }

    [[nodiscard]] QString equalizerLabel() const;
    [[nodiscard]] QString equalizerValue() const;
    [[nodiscard]] int equalizerPreset() const;
    [[nodiscard]] QList<double> gains() const;
    [[nodiscard]] QStringList bandLabels() const;
    Q_INVOKABLE void toggleEQ();
    Q_INVOKABLE void toggleEQMode();
    /// dB. Bands from 0.
    Q_INVOKABLE void setGain(int band, double gain);
    Q_INVOKABLE void applyEQPreset(int index);
    Q_INVOKABLE void resetEQ();

    [[nodiscard]] double balance() const { return static_cast<double>(state_.balance); }

    [[nodiscard]] QString balanceLabel() const;
    Q_INVOKABLE void setBalance(double balance);

    [[nodiscard]] bool isGateEnabled() const { return state_.isGateEnabled; }

    [[nodiscard]] double gateThreshold() const { return static_cast<double>(state_.gateThreshold); }

    [[nodiscard]] QString gateLabel() const;

    [[nodiscard]] bool isGateOpen() const { return isGateOpen_; }

    [[nodiscard]] QString gateHelp() const;
    Q_INVOKABLE void setGateEnabled(bool isEnabled);
    Q_INVOKABLE void setGateThreshold(double threshold);

    [[nodiscard]] bool isCompressorOff() const { return state_.compressor.isOff(); }

    [[nodiscard]] QString compressorPreset() const;
    [[nodiscard]] QString compressorLabel() const;

    [[nodiscard]] bool isCompressorAdvanced() const { return expansion_.isCompressorAdvanced; }

    [[nodiscard]] QList<double> compressorValues() const;

    [[nodiscard]] QList<double> reductions() const { return reductions_; }

    Q_INVOKABLE void toggleCompressorAdvanced();
    Q_INVOKABLE void applyCompressorPreset(int index);
    /// `field` counts `kCompressorFields`.
    Q_INVOKABLE void setCompressorValue(int band, int field, double value);

Q_SIGNALS:
    /// Its row is about to become higher or lower.
    void unfolding();
    void changed();
    /// Sixty times a second under a hand, which nothing else of the row needs to hear of.
    void volumeChanged();
    void expansionChanged();
    void elapsedChanged();
    void gateMoved();
    void reductionsMoved();

private:
    void expand(RowExpansion expansion);
    void followVolume(float volume);
    void updateGate();
    void updateReductions();

    const std::shared_ptr<MixerViewModel> model_;
    AudioApp app_;
    RowState state_;
    VolumeSlider slider_;
    RowExpansion expansion_;
    int holds_ = 0;
    int elapsedSeconds_ = 0;
    bool isGateOpen_ = true;
    QList<double> reductions_{0.0, 0.0, 0.0};
};

} // namespace orvanta
