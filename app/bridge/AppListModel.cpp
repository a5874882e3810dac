#include "app/bridge/AppListModel.h"

#include "app/bridge/Text.h"

#include <algorithm>
#include <utility>

namespace orvanta {

AppListModel::AppListModel(std::shared_ptr<MixerViewModel> model) : model_(std::move(model)) {}

AppListModel::~AppListModel() = default;

int AppListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant AppListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    AppItem* const item = rows_.at(static_cast<std::size_t>(index.row()));
    if (role == itemRole)
        return QVariant::fromValue(item);
    return role == sectionRole ? QVariant(qText(titleOf(item->state().section))) : QVariant();
}

QHash<int, QByteArray> AppListModel::roleNames() const {
    return {{itemRole, "app"}, {sectionRole, "section"}};
}

void AppListModel::update(Seconds now) {
    std::map<const AppItem*, AppSection> before;
    for (const AppItem* const item : rows_)
        before.emplace(item, item->state().section);
    updateItems(now);
    const Items next = ordered();
    removeGone(next);
    arrange(next);
    tellSections(before);
    count();
    endGone();
}

std::optional<Seconds> AppListModel::nextExpiry() const {
    std::optional<Seconds> next;
    for (const AppItem* const item : rows_) {
        if (item->state().section != AppSection::recentlyActive)
            continue;
        const Seconds expiry = valueOr(model_->lastActiveTime(), item->pid(), Seconds{0.0}) +
                               MixerViewModel::recentActivityWindow;
        next = next ? std::min(*next, expiry) : expiry;
    }
    return next;
}

void AppListModel::tick() {
    for (AppItem* const item : rows_)
        item->tick();
}

void AppListModel::updateElapsed() {
    for (AppItem* const item : rows_)
        item->updateElapsed();
}

void AppListModel::foldAll() {
    for (AppItem* const item : rows_)
        item->fold();
}

void AppListModel::updateItems(Seconds now) {
    for (const AudioApp& app : model_->audioApps.get()) {
        auto& item = items_[app.pid];
        if (item)
            item->update(app, now);
        else
            item = std::make_unique<AppItem>(model_, app, now);
    }
}

AppListModel::Items AppListModel::ordered() const {
    Items next;
    for (const AppSection section : kAppSections)
        for (const AudioApp& app : model_->audioApps.get())
            if (AppItem* const item = items_.at(app.pid).get(); item->state().section == section)
                next.push_back(item);
    return next;
}

void AppListModel::removeGone(const Items& next) {
    for (std::size_t row = rows_.size(); row-- > 0;) {
        if (std::ranges::find(next, rows_[row]) != next.end())
            continue;
        const int place = static_cast<int>(row);
        beginRemoveRows({}, place, place);
        rows_.erase(rows_.begin() + place);
        endRemoveRows();
    }
}

void AppListModel::arrange(const Items& next) {
    for (std::size_t row = 0; row < next.size(); ++row) {
        if (row < rows_.size() && rows_[row] == next[row])
            continue;
        const int place = static_cast<int>(row);
        const auto present = std::ranges::find(rows_, next[row]);
        if (present == rows_.end()) {
            beginInsertRows({}, place, place);
            rows_.insert(rows_.begin() + place, next[row]);
            endInsertRows();
            continue;
        }
        const int from = static_cast<int>(present - rows_.begin());
        beginMoveRows({}, from, from, {}, place);
        rows_.erase(present);
        rows_.insert(rows_.begin() + place, next[row]);
        endMoveRows();
    }
}

void AppListModel::tellSections(const std::map<const AppItem*, AppSection>& before) {
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const auto found = before.find(rows_[row]);
        if (found == before.end() || found->second == rows_[row]->state().section)
            continue;
        const QModelIndex changedRow = index(static_cast<int>(row));
        Q_EMIT dataChanged(changedRow, changedRow, {sectionRole});
    }
}

void AppListModel::count() {
    QVariantMap counts;
    for (const AppItem* const item : rows_) {
        const QString title = qText(titleOf(item->state().section));
        counts.insert(title, counts.value(title).toInt() + 1);
    }
    if (std::exchange(sectionCounts_, counts) != counts)
        Q_EMIT sectionCountsChanged();
}

void AppListModel::endGone() {
    for (auto entry = items_.begin(); entry != items_.end();) {
        if (std::ranges::find(rows_, entry->second.get()) != rows_.end()) {
            ++entry;
            continue;
        }
        gone_.push_back(std::move(entry->second));
        entry = items_.erase(entry);
    }
    std::erase_if(gone_, [](const auto& item) { return !item->isHeld(); });
}

} // namespace orvanta
