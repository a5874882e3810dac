#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace orvanta {

/// What a row's controls offer, and words for a value that is under a hand still.
class RowValues final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Each with `name`, `emoji` and the `heading` above it, empty but for the first of a group.
    Q_PROPERTY(QVariantList equalizerPresets READ equalizerPresets CONSTANT)
    /// The three knobs: `text`, and the `band` that each moves.
    Q_PROPERTY(QVariantList simpleBands READ simpleBands CONSTANT)
    /// Ten: `label`, and where on the canvas its frequency is, `share`.
    Q_PROPERTY(QVariantList bands READ bands CONSTANT)
    Q_PROPERTY(QStringList compressorPresets READ compressorPresets CONSTANT)
    /// Each with `label`, `accessibleLabel`, `minimum`, `maximum` and `step`.
    Q_PROPERTY(QVariantList compressorFields READ compressorFields CONSTANT)

public:
    [[nodiscard]] QVariantList equalizerPresets() const;
    [[nodiscard]] QVariantList simpleBands() const;
    [[nodiscard]] QVariantList bands() const;
    [[nodiscard]] QStringList compressorPresets() const;
    [[nodiscard]] QVariantList compressorFields() const;

    Q_INVOKABLE [[nodiscard]] QString expansionHint(bool isExpanded) const;
    Q_INVOKABLE [[nodiscard]] QString gainReadOut(double gain) const;
    Q_INVOKABLE [[nodiscard]] QString gainValue(double gain) const;
    Q_INVOKABLE [[nodiscard]] bool isGainLit(double gain) const;
    /// `value`, `readOut`, `isLeftLit` and `isRightLit`.
    Q_INVOKABLE [[nodiscard]] QVariantMap balanceWords(double balance) const;
    Q_INVOKABLE [[nodiscard]] QString thresholdReadOut(double threshold) const;
    Q_INVOKABLE [[nodiscard]] QString thresholdValue(double threshold) const;
    /// `field` counts `compressorFields`.
    Q_INVOKABLE [[nodiscard]] QString compressorReadOut(int field, double value) const;
    Q_INVOKABLE [[nodiscard]] QString compressorValue(int field, double value) const;
};

} // namespace orvanta
