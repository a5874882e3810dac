#include "app/demo/IconTile.h"
#include "app/popover/LevelColors.h"
#include "tests/app/pictures/ControlStates.h"
#include "tests/app/support/ViewRig.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickWindow>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <utility>

namespace orvanta::test {
namespace {

/// An icon that was painted into a file.
class PaintedIcon final : public Icon {
public:
    PaintedIcon(std::filesystem::path file, std::string key)
        : file_(std::move(file)), key_(std::move(key)) {}

    [[nodiscard]] std::string cacheKey() const override { return key_; }

    [[nodiscard]] std::optional<std::filesystem::path> imageFile(int /*pixels*/) const override {
        return file_;
    }

private:
    const std::filesystem::path file_;
    const std::string key_;
};

constexpr auto kPanel = "shell/PopoverWithHotkey.qml";

struct Look {
    std::string name;
    demo::IconTile tile;
};

const std::vector<Look>& looks() {
    static const std::vector<Look> all{
        {"Tide Browser", {"globe", qRgb(58, 192, 219), qRgb(27, 108, 199)}},
        {"Vinyl", {"music.note", qRgb(245, 138, 142), qRgb(199, 52, 94)}},
        {"Meetly", {"person.2.fill", qRgb(110, 178, 240), qRgb(40, 108, 205)}},
        {"Podium", {"mic.fill", qRgb(214, 110, 230), qRgb(110, 80, 235)}},
        {"Forgotten Isles", {"gamecontroller.fill", qRgb(128, 220, 132), qRgb(45, 140, 62)}},
        {"Chatter", {"bubble.left.fill", qRgb(78, 222, 180), qRgb(20, 160, 120)}},
        {"Readaloud", {"book.fill", qRgb(255, 178, 96), qRgb(226, 88, 34)}},
        {"Telly", {"display", qRgb(150, 158, 170), qRgb(88, 96, 108)}},
    };
    return all;
}

class Pictures {
public:
    explicit Pictures(std::filesystem::path folder) : folder_(std::move(folder)) {
        std::filesystem::create_directories(folder_);
    }

    /// Shows a window and keeps its picture.
    void take(ViewRig& rig, const std::string& name, const QString& file,
              QVariantMap properties = {}) {
        rig.settle();
        const auto view = rig.make(file, std::move(properties));
        auto& window = dynamic_cast<QQuickWindow&>(*view);
        window.show();
        letItSettle(rig);
        if (beforePicture)
            std::exchange(beforePicture, nullptr)(window);
        letItSettle(rig);
        save(window.grabWindow(), name);
    }

    void save(const QImage& picture, const std::string& name) const {
        const auto target = folder_ / (name + ".png");
        if (!picture.save(QString::fromStdString(target.string())))
            throw std::runtime_error("cannot write " + target.string());
    }

    static void letItSettle(ViewRig& rig) {
        for (int turn = 0; turn < 20; ++turn) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            rig.letMetersRise();
        }
    }

    std::function<void(QQuickWindow&)> beforePicture;

private:
    const std::filesystem::path folder_;
};

void list(ViewRig& rig, std::int32_t pid, const std::string& name, bool isPlaying = true,
          const std::string& looksLike = {}) {
    rig.list(pid, name, std::nullopt, isPlaying);
    const auto found =
        std::ranges::find(looks(), looksLike.empty() ? name : looksLike, &Look::name);
    if (found == looks().end())
        return;
    const auto file = rig.home.path() / (found->name + ".png");
    if (!demo::paintTile(found->tile, 104).save(QString::fromStdString(file.string())))
        throw std::runtime_error("cannot write an icon");
    rig.discovery->apps.back().icon = std::make_shared<PaintedIcon>(file, found->name);
}

void tap(ViewRig& rig, std::int32_t pid) {
    rig.refresh();
    const auto app = std::ranges::find(rig.discovery->apps, pid, &AudioApp::pid);
    rig.model->toggleTap(*app);
}

AppItem& itemOf(ViewRig& rig, std::int32_t pid) {
    rig.settle();
    for (int row = 0; row < rig.mixer->apps()->rowCount(); ++row) {
        auto* const item = rig.mixer->apps()
                               ->data(rig.mixer->apps()->index(row), AppListModel::itemRole)
                               .value<AppItem*>();
        if (item->pid() == pid)
            return *item;
    }
    throw std::runtime_error("no such row");
}

void addSecondDevice(ViewRig& rig) {
    rig.devices->devices.push_back({.id = 2, .uid = "monitors", .name = "Studio Monitors"});
}

/// One application tapped, one that has just fallen silent, three that never played.
void fillFive(ViewRig& rig) {
    addSecondDevice(rig);
    list(rig, 10, "Tide Browser");
    list(rig, 11, "Vinyl");
    list(rig, 12, "Meetly", false);
    list(rig, 13, "Podium", false);
    list(rig, 14, "Telly", false);
    tap(rig, 11);
    rig.tapping->levels[11] = {.rms = 0.2F, .peak = 0.4F};
    rig.mixer->setPanelVisible(true);
    rig.runLoop.advance(Seconds{0.3});
    rig.model->toggleTap(rig.discovery->apps[1]);
    rig.discovery->apps[1].isPlaying = false;
    tap(rig, 10);
    rig.model->setVolume(10, 0.85F);
    rig.model->setEQ(10, 3, 4);
    rig.model->setEQ(10, 5, -2);
    rig.model->setEQ(10, 7, 3);
    rig.model->setBalance(10, -0.2F);
    rig.model->setNoiseGate(10, true, -48);
    rig.model->setCompressor(10, CompressorPreset::music);
    rig.model->setMasterVolume(0.725F);
    rig.model->launchAtLogin.set(true);
    rig.tapping->levels[10] = {.rms = 0.3F, .peak = 0.56F};
    rig.tapping->gatesOpen[10] = true;
    itemOf(rig, 10).toggleEQ();
}

void takePanel(Pictures& pictures, ThemeChoice theme, const std::string& name,
               bool isHighContrast = false) {
    ViewRig rig;
    rig.themes.choice.set(theme);
    rig.theme.setLook(
        {.isHighContrast = isHighContrast, .isMotionReduced = true, .hasCompositor = true});
    fillFive(rig);
    pictures.take(rig, name, kPanel);
}

void takeTenBand(Pictures& pictures) {
    ViewRig rig;
    fillFive(rig);
    const float gains[] = {5, 4, 2, 0, -2, 0, 1, 3, 4, 4};
    for (int band = 0; band < 10; ++band)
        rig.model->setEQ(10, band, gains[band]);
    rig.model->setBalance(10, 0);
    rig.model->setNoiseGate(10, false, -48);
    rig.tapping->gainReductions[10] = {3.0F, 5.0F, 1.0F};
    itemOf(rig, 10).toggleEQMode();
    itemOf(rig, 10).toggleCompressorAdvanced();
    pictures.beforePicture = [](QQuickWindow& window) {
        auto* const apps = window.findChild<QQuickItem*>("apps");
        apps->setProperty("contentY", apps->property("contentY").toReal() + 105.5);
    };
    pictures.take(rig, "panel-tenband", kPanel);
}

void takeRecording(Pictures& pictures) {
    ViewRig rig;
    addSecondDevice(rig);
    list(rig, 13, "Podium");
    list(rig, 10, "Tide Browser");
    for (std::int32_t pid = 30; pid < 34; ++pid)
        list(rig, pid, "Program " + std::to_string(pid), false);
    tap(rig, 13);
    tap(rig, 10);
    rig.mixer->setPanelVisible(true);
    rig.model->autoTapEnabled.set(true);
    rig.model->setVolume(13, 1.2F);
    rig.model->routeApp(13, "monitors");
    rig.model->setNoiseGate(13, true, -60);
    rig.model->setCompressor(13, CompressorPreset::podcast);
    rig.model->toggleRecording(13);
    rig.tapping->recordingDurations[13] = 727.5;
    rig.tapping->gatesOpen[13] = false;
    rig.tapping->levels[13] = {.rms = 0.5F, .peak = 0.78F};
    rig.model->setVolume(10, 0.4F);
    rig.model->toggleMute(10);
    rig.model->setBalance(10, 0.35F);
    rig.tapping->levels[10] = {.rms = 0.5F, .peak = 0.7F};
    rig.model->setMasterVolume(0.865F);
    pictures.take(rig, "panel-recording", kPanel);
}

void takeList(Pictures& pictures) {
    ViewRig rig;
    list(rig, 13, "Podium");
    list(rig, 14, "Forgotten Isles: Director’s Edition Remastered", true, "Forgotten Isles");
    list(rig, 15, "مشغل الموسيقى العربي", true, "Chatter");
    list(rig, 11, "Vinyl");
    list(rig, 12, "Meetly");
    tap(rig, 11);
    tap(rig, 12);
    rig.tapping->levels[11] = rig.tapping->levels[12] = {.rms = 0.2F, .peak = 0.4F};
    rig.mixer->setPanelVisible(true);
    rig.runLoop.advance(Seconds{0.3});
    rig.model->toggleTap(rig.discovery->apps[3]);
    rig.model->toggleTap(rig.discovery->apps[4]);
    rig.discovery->apps[3].isPlaying = rig.discovery->apps[4].isPlaying = false;
    list(rig, 16, "Telly", false);
    list(rig, 17, "sound-check", false);
    list(rig, 18, "Readaloud", false);
    for (std::int32_t pid = 100; pid < 142; ++pid)
        list(rig, pid, "Program " + std::to_string(pid), false);
    rig.refresh();
    rig.model->setMasterVolume(0.5F);
    rig.model->toggleMuteAll();
    rig.model->masterVolume.set(0.5F);
    pictures.take(rig, "panel-list", kPanel);
}

void takeEmpty(Pictures& pictures) {
    ViewRig rig;
    rig.model->autoTapEnabled.set(true);
    rig.model->setMasterVolume(0.5F);
    pictures.take(rig, "panel-empty", kPanel);
}

void leaveCrashReport(const ViewRig& rig) {
    std::ofstream(rig.crashReporter.logDir() / "crash-2026-01-01T12-00-00Z.log") << "report\n";
}

void takeSmallWindows(Pictures& pictures) {
    ViewRig rig;
    pictures.take(rig, "about-without-reports", "welcome/AboutWindow.qml");
    leaveCrashReport(rig);
    pictures.take(rig, "about", "welcome/AboutWindow.qml");
    for (int page = 0; page < 3; ++page) {
        pictures.beforePicture = [page](QQuickWindow& window) {
            window.findChild<QQuickItem*>("onboarding")->setProperty("currentPage", page);
        };
        pictures.take(rig, "onboarding-" + std::to_string(page + 1),
                      "welcome/OnboardingWindow.qml");
    }
}

/// Six programs from nearly silent to nearly too loud.
QVariantList metered(ViewRig& rig) {
    const float peaks[] = {0.05F, 0.3F, 0.7F, 0.92F, 0.8F, 0.5F};
    QVariantList apps;
    for (std::int32_t pid = 10; pid < 16; ++pid) {
        list(rig, pid, "Program " + std::to_string(pid));
        tap(rig, pid);
        const float peak = peaks[pid - 10];
        rig.tapping->levels[pid] = {.rms = 0.5F * peak, .peak = peak};
    }
    for (std::int32_t pid = 10; pid < 16; ++pid)
        apps.append(QVariant::fromValue(&itemOf(rig, pid)));
    rig.mixer->setPanelVisible(true);
    return apps;
}

void takeControls(Pictures& pictures) {
    ViewRig rig;
    const QList<float> volumes{0.2F, 0.66F, 0.9F, 1.3F, 1.8F, 1.0F};
    QStringList tints;
    QVariantList values;
    for (const float volume : volumes) {
        tints.append(QString::fromUtf8(volumeColor(volume)));
        values.append(volume);
    }
    QQmlComponent component(&rig.engine, QUrl("qrc:/pictures/ControlsSheet.qml"));
    const std::unique_ptr<QObject> sheet(
        component.createWithInitialProperties({{"mixer", QVariant::fromValue(rig.mixer.get())},
                                               {"apps", metered(rig)},
                                               {"tints", tints},
                                               {"volumes", values}}));
    if (!sheet)
        throw std::runtime_error(component.errorString().toStdString());
    ControlStates states(dynamic_cast<QQuickItem&>(*sheet), [&] { Pictures::letItSettle(rig); });
    pictures.save(states.picture(), "controls");
}

int run(const std::string& folder) {
    Pictures pictures(folder);
    takePanel(pictures, ThemeChoice::classic, "panel");
    takePanel(pictures, ThemeChoice::meridane, "panel-meridane");
    takePanel(pictures, ThemeChoice::classic, "panel-contrast", true);
    takePanel(pictures, ThemeChoice::meridane, "panel-contrast-meridane", true);
    takeTenBand(pictures);
    takeRecording(pictures);
    takeList(pictures);
    takeEmpty(pictures);
    takeSmallWindows(pictures);
    takeControls(pictures);
    return 0;
}

} // namespace
} // namespace orvanta::test

/// Draws every view in every state worth looking at into a directory.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: orvanta_pictures DIRECTORY\n");
        return 2;
    }
    try {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        const QGuiApplication application(argc, argv);
        return orvanta::test::run(argv[1]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
