#pragma once

#include "tests/app/support/ViewTest.h"

#include <cstdint>
#include <string>

namespace orvanta::test {

/// The panel, open.
class PanelTest : public ViewTest {
protected:
    void showPanel() {
        mixer->setPanelVisible(true);
        // A slider may write at once.
        runLoop.advance(Seconds{1.0});
        show("popover/AudioMixerPopover.qml");
    }

    void listAndTap(std::int32_t pid, const std::string& name) {
        list(pid, name);
        refresh();
        model->toggleTap(discovery->apps.back());
    }

    /// Alone, and the panel open.
    void showTapped(std::int32_t pid, const std::string& name) {
        listAndTap(pid, name);
        showPanel();
        forget();
    }

    void quit(std::int32_t pid) {
        unlist(pid);
        refresh();
        settleView();
    }

    void addDevice(const std::string& uid, const std::string& name) {
        server.addDevice({.uid = uid, .name = name});
        devices->devices.push_back({.id = 9, .uid = uid, .name = name});
        devices->announce();
    }

    void removeLastDevice() {
        devices->devices.pop_back();
        devices->announce();
        settleView();
    }

    /// The panel with a control of every kind in it: of two tapped applications one has the simple
    /// equaliser open, the other the ten bands and its compressor's.
    void showUnfolded(std::int32_t simple, std::int32_t advanced) {
        showPanel();
        shell->setCanCheckForUpdates(true);
        itemOf(simple).toggleEQ();
        itemOf(advanced).toggleEQ();
        itemOf(advanced).toggleEQMode();
        itemOf(advanced).toggleCompressorAdvanced();
        settleView();
    }

    /// Of an application's row.
    [[nodiscard]] AppItem& itemOf(std::int32_t pid) {
        AppListModel& rows = *mixer->apps();
        for (int row = 0; row < rows.rowCount(); ++row) {
            auto* const item = rows.data(rows.index(row), AppListModel::itemRole).value<AppItem*>();
            if (item->pid() == pid)
                return *item;
        }
        throw std::runtime_error("no such row");
    }
};

} // namespace orvanta::test
