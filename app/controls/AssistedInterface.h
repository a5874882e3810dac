#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace orvanta {

/// What assistive tools see of an `AssistedItem`, or of an entry of a menu. It takes the words of
/// the item's `Accessible`, as the toolkit's own does, which knows neither disabled nor expanded.
class AssistedInterface final : public QAccessibleObject,
                                public QAccessibleActionInterface,
                                public QAccessibleValueInterface {
public:
    explicit AssistedInterface(QQuickItem& item) : QAccessibleObject(&item) {}

    /// From here on such items have it.
    static void install();

    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override;

    [[nodiscard]] QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    [[nodiscard]] QVariant maximumValue() const override;
    [[nodiscard]] QVariant minimumValue() const override;
    [[nodiscard]] QVariant minimumStepSize() const override;

private:
    [[nodiscard]] QQuickItem& item() const { return static_cast<QQuickItem&>(*object()); }

    /// What the view has said of the item; null where it has said nothing.
    [[nodiscard]] QObject* words() const;
    [[nodiscard]] QVariant word(const char* name) const;
    [[nodiscard]] QList<QQuickItem*> children() const;
    [[nodiscard]] bool isAboutValue() const;
};

} // namespace orvanta
