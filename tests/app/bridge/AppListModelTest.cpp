#include "app/bridge/AppListModel.h"

#include "app/bridge/AppItemHold.h"
#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>
#include <random>
#include <utility>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A row of the list: its section's title and its process.
using Row = std::pair<std::string, std::int32_t>;

class AppListModelTest : public testing::Test, public ModelRig {
protected:
    AppListModelTest() {
        startRunning();
        rows = std::make_unique<AppListModel>(model);
        tester = std::make_unique<QAbstractItemModelTester>(
            rows.get(), QAbstractItemModelTester::FailureReportingMode::Warning);
    }

    ~AppListModelTest() override { tester.reset(); }

    [[nodiscard]] AppItem* itemAt(int row) const {
        return rows->data(rows->index(row), AppListModel::itemRole).value<AppItem*>();
    }

    [[nodiscard]] std::vector<Row> shown() const {
        std::vector<Row> all;
        for (int row = 0; row < rows->rowCount(); ++row)
            all.emplace_back(
                rows->data(rows->index(row), AppListModel::sectionRole).toString().toStdString(),
                itemAt(row)->pid());
        return all;
    }

    void takeUp() {
        refresh();
        rows->update(runLoop.now());
    }

    [[nodiscard]] AudioApp& listed(std::int32_t pid) {
        return *std::ranges::find(discovery->apps, pid, &AudioApp::pid);
    }

    /// Heard just now, and silent from now on.
    void listRecentlyActive(std::int32_t pid, const std::string& name) {
        list(pid, name);
        refresh();
        model->toggleTap(listed(pid));
        tapping->levels[pid] = {.rms = 0.2F, .peak = 0.4F};
        runLoop.advance(Seconds{0.13});
        model->toggleTap(listed(pid));
        listed(pid).isPlaying = false;
    }

    std::unique_ptr<AppListModel> rows;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(AppListModelTest, IsEmptyAtFirst) {
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_TRUE(rows->sectionCounts().isEmpty());
    EXPECT_EQ(rows->nextExpiry(), std::nullopt);
    EXPECT_THAT(rows->roleNames().values(), UnorderedElementsAre("app", "section"));
}

TEST_F(AppListModelTest, OrdersSectionBySectionAndInEachAsDiscoveryDoes) {
    list(10, "Idle one", std::nullopt, false);
    listRecentlyActive(11, "Heard one");
    list(12, "Playing one");
    list(13, "Idle two", std::nullopt, false);
    listRecentlyActive(14, "Heard two");
    list(15, "Playing two");
    takeUp();
    EXPECT_THAT(shown(),
                ElementsAre(Row("Playing", 12), Row("Playing", 15), Row("Recently Active", 11),
                            Row("Recently Active", 14), Row("Idle", 10), Row("Idle", 13)));
    EXPECT_EQ(rows->sectionCounts(),
              QVariantMap({{"Playing", 2}, {"Recently Active", 2}, {"Idle", 2}}));
}

TEST_F(AppListModelTest, MovesARowAndKeepsItsItem) {
    for (const std::int32_t pid : {10, 11, 12})
        list(pid, "Program " + std::to_string(pid));
    takeUp();
    AppItem* const first = itemAt(0);
    QSignalSpy moves(rows.get(), &QAbstractItemModel::rowsMoved);
    QSignalSpy inserts(rows.get(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removals(rows.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy resets(rows.get(), &QAbstractItemModel::modelReset);
    listed(10).isPlaying = false;
    takeUp();
    EXPECT_EQ(itemAt(2), first);
    EXPECT_GE(moves.count(), 1);
    EXPECT_EQ(inserts.count() + removals.count() + resets.count(), 0);
}

TEST_F(AppListModelTest, TellsThatARowIsInAnotherSectionWhereItsPlaceIsTheSame) {
    list(10, "Vinyl");
    takeUp();
    QSignalSpy changes(rows.get(), &QAbstractItemModel::dataChanged);
    QSignalSpy counts(rows.get(), &AppListModel::sectionCountsChanged);
    listed(10).isPlaying = false;
    takeUp();
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes.first().at(0).toModelIndex().row(), 0);
    EXPECT_EQ(changes.first().at(2).value<QList<int>>(), QList<int>{AppListModel::sectionRole});
    EXPECT_EQ(counts.count(), 1);
    takeUp();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(counts.count(), 1);
}

TEST_F(AppListModelTest, EndsTheItemsOfApplicationsThatHaveGone) {
    list(10, "Vinyl");
    list(11, "Telly");
    takeUp();
    const QPointer<AppItem> gone = itemAt(0);
    const QPointer<AppItem> kept = itemAt(1);
    unlist(10);
    takeUp();
    EXPECT_TRUE(gone.isNull());
    EXPECT_EQ(itemAt(0), kept);
}

TEST_F(AppListModelTest, KeepsTheItemOfAnApplicationThatHasGoneUntilItsRowLetsGo) {
    list(10, "Vinyl");
    list(11, "Telly");
    takeUp();
    const QPointer<AppItem> gone = itemAt(0);
    AppItemHold hold;
    hold.setItem(gone);
    unlist(10);
    takeUp();
    ASSERT_FALSE(gone.isNull());
    EXPECT_EQ(gone->name(), "Vinyl");
    EXPECT_EQ(rows->rowCount(), 1);
    hold.setItem(itemAt(0));
    takeUp();
    EXPECT_TRUE(gone.isNull());
}

TEST_F(AppListModelTest, MakesAnotherItemForAnApplicationThatComesBack) {
    list(10, "Vinyl");
    takeUp();
    AppItemHold hold;
    hold.setItem(itemAt(0));
    unlist(10);
    takeUp();
    list(10, "Vinyl");
    takeUp();
    EXPECT_NE(itemAt(0), hold.item());
}

TEST_F(AppListModelTest, HasNothingUnderARowAndNoOtherRoles) {
    list(10, "Vinyl");
    takeUp();
    EXPECT_FALSE(rows->data(rows->index(0), Qt::DisplayRole).isValid());
    EXPECT_EQ(rows->rowCount(rows->index(0)), 0);
}

TEST_F(AppListModelTest, ChangesSectionsWithTimeAlone) {
    listRecentlyActive(10, "Vinyl");
    takeUp();
    const Seconds heard = model->lastActiveTime().at(10);
    EXPECT_EQ(rows->nextExpiry(), heard + Seconds{60.0});
    rows->update(heard + Seconds{59.0});
    EXPECT_THAT(shown(), ElementsAre(Row("Recently Active", 10)));
    rows->update(heard + Seconds{60.0});
    EXPECT_THAT(shown(), ElementsAre(Row("Idle", 10)));
    EXPECT_EQ(rows->nextExpiry(), std::nullopt);
}

TEST_F(AppListModelTest, LooksAgainWhenTheFirstOfSeveralExpires) {
    listRecentlyActive(10, "Vinyl");
    runLoop.advance(Seconds{5.0});
    listRecentlyActive(11, "Telly");
    takeUp();
    EXPECT_EQ(rows->nextExpiry(), model->lastActiveTime().at(10) + Seconds{60.0});
}

TEST_F(AppListModelTest, FoldsAllRows) {
    list(10, "Vinyl");
    list(11, "Telly");
    takeUp();
    itemAt(0)->toggleEQ();
    itemAt(1)->toggleCompressorAdvanced();
    rows->foldAll();
    EXPECT_FALSE(itemAt(0)->isEQExpanded());
    EXPECT_FALSE(itemAt(1)->isCompressorAdvanced());
}

/// What the list has to show, made in the plainest way.
std::vector<Row> expectedRows(const MixerViewModel& model, Seconds now) {
    std::vector<Row> expected;
    for (const char* const section : {"Playing", "Recently Active", "Idle"})
        for (const AudioApp& app : model.audioApps.get()) {
            const auto heard = model.lastActiveTime().find(app.pid);
            const bool isRecent =
                heard != model.lastActiveTime().end() && now - heard->second < Seconds{60.0};
            const char* const actual = app.isPlaying ? "Playing"
                                       : isRecent    ? "Recently Active"
                                                     : "Idle";
            if (std::string(actual) == section)
                expected.emplace_back(section, app.pid);
        }
    return expected;
}

/// A list as a view keeps it: told of every change, it never looks at the whole.
class Follower {
public:
    explicit Follower(const AppListModel& rows) {
        using Model = QAbstractItemModel;
        const auto itemOf = [&rows](int row) {
            return rows.data(rows.index(row), AppListModel::itemRole).value<AppItem*>();
        };
        Model::connect(&rows, &Model::rowsInserted, &rows,
                       [this, itemOf](const QModelIndex&, int first, int last) {
                           for (int row = first; row <= last; ++row)
                               items_.insert(items_.begin() + row, itemOf(row));
                       });
        Model::connect(&rows, &Model::rowsRemoved, &rows,
                       [this](const QModelIndex&, int first, int last) {
                           items_.erase(items_.begin() + first, items_.begin() + last + 1);
                       });
        Model::connect(&rows, &Model::rowsMoved, &rows,
                       [this](const QModelIndex&, int first, int last, const QModelIndex&, int to) {
                           ASSERT_EQ(first, last);
                           AppItem* const moved = items_.at(static_cast<std::size_t>(first));
                           items_.erase(items_.begin() + first);
                           items_.insert(items_.begin() + (to > first ? to - 1 : to), moved);
                       });
    }

    [[nodiscard]] const std::vector<AppItem*>& items() const { return items_; }

private:
    std::vector<AppItem*> items_;
};

class AppListModelWithRandomChanges : public AppListModelTest,
                                      public testing::WithParamInterface<unsigned> {
protected:
    std::mt19937 random{GetParam()};

    int upTo(int most) { return std::uniform_int_distribution(0, most)(random); }

    void changeSomething() {
        auto& apps = discovery->apps;
        const auto any = [&] {
            return apps.begin() + upTo(static_cast<int>(apps.size()) - 1);
        };
        const int what = apps.empty() ? 0 : upTo(6);
        if (what <= 1 && apps.size() < 30) {
            const int pid = nextPid++;
            list(pid, "Program " + std::to_string(pid), std::nullopt, upTo(1) == 1);
            std::iter_swap(apps.end() - 1, any());
        } else if (what == 2) {
            apps.erase(any());
        } else if (what == 3) {
            any()->isPlaying ^= true;
        } else if (what == 4) {
            std::ranges::shuffle(apps, random);
        } else if (what == 5) {
            const AudioApp app = *any();
            model->toggleTap(app);
            tapping->levels[app.pid] = {.rms = 0.2F, .peak = 0.4F};
        } else {
            runLoop.advance(Seconds{static_cast<double>(upTo(40))});
        }
    }

    int nextPid = 10;
};

TEST_P(AppListModelWithRandomChanges, ShowsWhatAPlainListWould) {
    const Follower follower(*rows);
    for (int step = 0; step < 400; ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        for (int change = upTo(3); change >= 0; --change)
            changeSomething();
        takeUp();
        const auto expected = expectedRows(*model, runLoop.now());
        ASSERT_EQ(shown(), expected);
        std::vector<AppItem*> items;
        for (int row = 0; row < rows->rowCount(); ++row)
            items.push_back(itemAt(row));
        ASSERT_EQ(follower.items(), items);
        QVariantMap counts;
        for (const Row& row : expected) {
            const QString section = QString::fromStdString(row.first);
            counts[section] = counts[section].toInt() + 1;
        }
        ASSERT_EQ(rows->sectionCounts(), counts);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, AppListModelWithRandomChanges, testing::Range(1U, 9U));

} // namespace
} // namespace orvanta::test
