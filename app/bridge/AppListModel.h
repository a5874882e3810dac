#pragma once

#include "app/bridge/AppItem.h"
#include "app/popover/AppSections.h"

#include <QAbstractListModel>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>
#include <map>
#include <memory>
#include <vector>

namespace orvanta {

/// The applications in the order of the panel: section by section, in each as the model has them.
/// A change of the order moves rows; only an application that comes or goes makes or ends one. What
/// an `AppItemHold` keeps ends when it has been let go of.
class AppListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The mixer has one.")
    /// How many rows each section has, by its title.
    Q_PROPERTY(QVariantMap sectionCounts READ sectionCounts NOTIFY sectionCountsChanged)

public:
    enum Role { itemRole = Qt::UserRole, sectionRole };

    explicit AppListModel(std::shared_ptr<MixerViewModel> model);
    ~AppListModel() override;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Takes up what the model has now.
    void update(Seconds now);
    /// When the first row changes its section by nothing but time; nothing when none does.
    [[nodiscard]] std::optional<Seconds> nextExpiry() const;
    void tick();
    void updateElapsed();
    void foldAll();

    [[nodiscard]] QVariantMap sectionCounts() const { return sectionCounts_; }

Q_SIGNALS:
    void sectionCountsChanged();

private:
    using Items = std::vector<AppItem*>;

    void updateItems(Seconds now);
    [[nodiscard]] Items ordered() const;
    void removeGone(const Items& next);
    void arrange(const Items& next);
    void tellSections(const std::map<const AppItem*, AppSection>& before);
    void count();
    void endGone();

    const std::shared_ptr<MixerViewModel> model_;
    std::map<std::int32_t, std::unique_ptr<AppItem>> items_;
    /// Of applications that are not there any more.
    std::vector<std::unique_ptr<AppItem>> gone_;
    Items rows_;
    QVariantMap sectionCounts_;
};

} // namespace orvanta
