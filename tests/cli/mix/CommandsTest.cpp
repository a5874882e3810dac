// Each command of a session: what it does to the sound, and what it answers.

#include "cli/mix/CommandTable.h"
#include "tests/cli/mix/MixRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kMusic = "pid=101 name=\"Music\" ";

class ASession : public testing::Test, public MixRig {
protected:
    void expectDone(const std::string& line, const std::string& answer) {
        EXPECT_EQ(say(line), kMusic + answer + "\n") << line;
    }

    void expectRefused(const std::string& line, const std::string& complaint) {
        EXPECT_EQ(say(line), complaint) << line;
    }
};

TEST_F(ASession, ListsApplicationsAndDevices) {
    EXPECT_EQ(say("list"),
              "pid=101 name=\"Music\" identifier=\"org.music\" playing=yes tapped=no\n"
              "pid=102 name=\"Speech\" identifier=\"org.speech\" playing=yes tapped=no\n");
    EXPECT_EQ(say("devices"), "uid=\"headphones\" name=\"Headphones\" default=no\n"
                              "uid=\"speakers\" name=\"Speakers\" default=yes\n");
    server.exitProgram(music);
    server.exitProgram(speech);
    EXPECT_EQ(say("list"), "none\n");
}

TEST_F(ASession, KnowsAnApplicationByItsProcessItsNameAndItsIdentifier) {
    for (const std::string name :
         {"101", "Music", "mUSIC", "\"music\"", "org.music", "ORG.MUSIC"}) {
        expectDone("tap " + name, "tapped=yes");
        expectDone("untap " + name, "tapped=no");
    }
}

TEST_F(ASession, ComparesNamesAsPeopleDo) {
    server.addProgram({.pid = 103, .name = "\xC3\x84rger"});
    EXPECT_THAT(say("status \xC3\xA4RGER"), StartsWith("pid=103 "));
}

TEST_F(ASession, TakesNoNameForAnother) {
    server.addProgram({.pid = 103, .name = "MUSIC"});
    EXPECT_THAT(say("status Music"), StartsWith("pid=101 ")) << "written just so";
    expectRefused("status music", "\"music\" may be \"MUSIC\" (103) and \"Music\" (101); say which "
                                  "by its process id.");
}

TEST_F(ASession, SaysWhatThereIsInPlaceOfAnUnknownApplication) {
    expectRefused("tap Video", "There is no application \"Video\"; there are \"Music\" (101) and "
                               "\"Speech\" (102).");
    server.exitProgram(speech);
    expectRefused("tap \"\"", "There is no application \"\"; there is \"Music\" (101).");
    server.exitProgram(music);
    expectRefused("tap Music", "There is no application \"Music\"; there is none at all.");
}

TEST_F(ASession, TapsAndGivesBack) {
    expectDone("tap Music", "tapped=yes");
    EXPECT_EQ(server.holdings().taps.size(), 1U);
    expectRefused("tap Music", "\"Music\" (101) is tapped already.");
    expectDone("untap Music", "tapped=no");
    EXPECT_THAT(server.holdings().taps, IsEmpty());
    expectRefused("untap Music", "\"Music\" (101) is not tapped.");
}

TEST_F(ASession, SaysInWordsWhyATapIsRefused) {
    server.failNext(embedded::Operation::createProcessTap, kAudioHardwareNotRunningError);
    expectRefused("tap Music",
                  "\"Music\" (101) cannot be tapped: Failed to create audio capture: OSStatus "
                  "1937010544 (the audio server or its session manager does not answer).");
    expectDone("tap Music", "tapped=yes");
}

TEST_F(ASession, SetsNothingOfWhatIsNotTapped) {
    for (const std::string line :
         {"volume 101 1", "mute 101", "unmute 101", "solo 101", "balance 101 0", "eq 101 Rock",
          "compressor 101 off", "limiter 101 on", "normalize 101 on", "width 101 1",
          "crossfeed 101 0", "gate 101 on", "route 101 headphones", "record 101 start"})
        expectRefused(line, "\"Music\" (101) is not tapped.");
}

TEST_F(ASession, SetsTheVolume) {
    say("tap 101");
    server.pauseProgram(speech);
    expectDone("volume 101 0.5", "volume=0.5 muted=no");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.25F);
    expectDone("volume 101 150%", "volume=1.5 muted=no");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.75F);
    expectRefused("volume 101 2.1", "\"2.1\" is not a number from 0 to 2.");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.75F);
}

TEST_F(ASession, MutesUntilItIsUnmutedOrGivenAVolume) {
    say("tap 101");
    server.pauseProgram(speech);
    expectDone("mute 101", "muted=yes");
    expectDone("mute 101", "muted=yes");
    EXPECT_EQ(peakOn(speakers), 0.0F);
    expectDone("unmute 101", "muted=no");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.5F);
    say("mute 101");
    expectDone("volume 101 0.5", "volume=0.5 muted=no");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.25F);
}

TEST_F(ASession, SolosAndUnsolos) {
    say("tap 101");
    say("tap 102");
    expectDone("solo Music", "soloed=yes");
    expectDone("solo Music", "soloed=yes");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.5F);
    say("untap Music");
    expectDone("unsolo Music", "soloed=no");
    server.pauseProgram(music);
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.25F);
}

TEST_F(ASession, SetsEffects) {
    say("tap 101");
    expectDone("balance 101 -0.25", "balance=-0.25");
    expectDone("compressor 101 \"night mode\"", "compressor=\"Night Mode\"");
    expectDone("limiter 101 on", "limiter=on");
    expectDone("normalize 101 on", "normalize=on");
    expectDone("width 101 1.5", "width=1.5");
    expectDone("crossfeed 101 0.3", "crossfeed=0.3");
    expectDone("gate 101 on -40", "gate=-40");
    const AudioTapping& tap = model->tapManager();
    EXPECT_EQ(tap.getBalance(101), -0.25F);
    EXPECT_EQ(tap.getCompressor(101), CompressorPreset::nightMode);
    EXPECT_TRUE(tap.isLimiterEnabled(101));
    EXPECT_TRUE(tap.isNormalizationEnabled(101));
    EXPECT_EQ(tap.getStereoWidth(101), 1.5F);
    EXPECT_EQ(tap.getCrossfeed(101), 0.3F);
    EXPECT_THAT(say("status 101"),
                HasSubstr("tapped=yes volume=1 muted=no soloed=no balance=-0.25 eq=\"flat\" "
                          "compressor=\"Night Mode\" limiter=on normalize=on width=1.5 "
                          "crossfeed=0.3 gate=-40 device=default recording=no\n"));
    expectDone("compressor 101 OFF", "compressor=\"Off\"");
    expectDone("limiter 101 off", "limiter=off");
    expectDone("normalize 101 off", "normalize=off");
    EXPECT_EQ(tap.getCompressor(101), std::nullopt);
    EXPECT_FALSE(tap.isLimiterEnabled(101));
    EXPECT_FALSE(tap.isNormalizationEnabled(101));
}

TEST_F(ASession, RefusesEffectsBeyondTheirRanges) {
    say("tap 101");
    for (const std::string line : {"balance 101 1.1", "width 101 2.6", "crossfeed 101 -0.1",
                                   "gate 101 on 1", "eq 101 1K 12.5", "limiter 101 1"})
        EXPECT_THAT(say(line), HasSubstr("\" is n")) << line;
    expectRefused("gate 101 off -40", "A gate that is off takes no threshold.");
    expectRefused("compressor 101 Loud",
                  "There is no compressor preset \"Loud\"; there are Off, Gentle, Music, Vocal, "
                  "Podcast, Broadcast, Night Mode and Cinema.");
}

TEST_F(ASession, SetsTheEqualiserByPresetAndByBand) {
    say("tap 101");
    expectDone("eq 101 \"late night\"", "eq=\"Late Night\"");
    EXPECT_EQ(model->tapManager().getEQ(101), EQPreset::lateNight);
    expectDone("eq 101 1k 3.5", "eq=\"-6 -4 -2 0 1 3.5 2 1 0 -1\"");
    expectDone("eq 101 16000 -2", "eq=\"-6 -4 -2 0 1 3.5 2 1 0 -2\"");
    EXPECT_EQ(model->tapManager().getEQ(101)->gains[5], 3.5F);
    expectDone("eq 101 Flat", "eq=\"flat\"");
    EXPECT_TRUE(model->tapManager().getEQ(101)->isFlat());
    expectRefused("eq 101 Loud",
                  "There is no equaliser preset \"Loud\"; there are Rock, Pop, Jazz, "
                  "Classical, Electronic, Hip-Hop, R&B, Late Night, Small Speakers, "
                  "Headphones, Podcast and Bass Boost.");
    expectRefused("eq 101 3K 1",
                  "There is no band \"3K\"; there are 31, 62, 125, 250, 500, 1K, 2K, "
                  "4K, 8K, 16K.");
}

TEST_F(ASession, AGateEndsWithItsTap) {
    say("tap 101");
    expectDone("gate 101 on", "gate=-60");
    say("untap 101");
    say("tap 101");
    EXPECT_THAT(say("status 101"), HasSubstr(" gate=off "));
    expectDone("gate 101 off", "gate=off");
}

TEST_F(ASession, RoutesToADeviceAndBack) {
    say("tap 101");
    server.pauseProgram(speech);
    expectDone("route 101 headphones", "device=\"headphones\"");
    EXPECT_EQ(peakOn(speakers), 0.0F);
    EXPECT_FLOAT_EQ(peakOn(headphones), 0.5F);
    EXPECT_THAT(say("status 101"), HasSubstr(" device=\"headphones\" "));
    expectDone("route 101 default", "device=default");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.5F);
}

TEST_F(ASession, LeavesATapWhereItPlaysWhenThereIsNoSuchDevice) {
    say("tap 101");
    say("route 101 headphones");
    expectRefused("route 101 nowhere", "There is no such device \"nowhere\"; devices are "
                                       "\"headphones\" and \"speakers\".");
    EXPECT_FLOAT_EQ(peakOn(headphones), 0.5F);
}

TEST_F(ASession, SaysInWordsWhyARouteIsRefused) {
    say("tap 101");
    for (const std::string device : {"headphones", "default"}) {
        server.failNext(embedded::Operation::createAggregateDevice, kAudioHardwareBadDeviceError);
        expectRefused("route 101 " + device,
                      "\"Music\" (101) cannot play on the device \"" + device +
                          "\": Audio device creation failed: 560227702 (there is no such device).");
    }
    server.failNext(embedded::Operation::startDevice, kAudioHardwareUnspecifiedError);
    EXPECT_THAT(say("route 101 headphones"),
                AllOf(HasSubstr("cannot play"), HasSubstr("Audio start failed")));
}

TEST_F(ASession, RecordsWhatItIsTold) {
    say("tap 101");
    EXPECT_EQ(say("format M4A"), "format=m4a\n");
    EXPECT_EQ(say("mode original"), "mode=original\n");
    EXPECT_EQ(say("folder ~/Tapes"), "folder=\"/home/user/Tapes\"\n");
    EXPECT_THAT(say("record 101 start"),
                AllOf(StartsWith(kMusic + "recording=\"/home/user/Tapes/Music_original_"),
                      HasSubstr(".m4a\"\n")));
    expectRefused("record 101 start", "\"Music\" (101) is being recorded already.");
    EXPECT_THAT(say("record 101 stop"), HasSubstr(" recorded=\"/home/user/Tapes/Music_original_"));
    expectRefused("record 101 stop", "\"Music\" (101) is not being recorded.");
    EXPECT_EQ(say("reveal"), "");
    ASSERT_EQ(fileViewer.shown.size(), 1U);
    EXPECT_EQ(fileViewer.shown[0].parent_path(), "/home/user/Tapes");
}

TEST_F(ASession, FinishesTheRecordingOfWhatItGivesBack) {
    say("tap 101");
    say("record 101 start");
    EXPECT_THAT(say("untap 101"),
                AllOf(HasSubstr(" recorded=\""), HasSubstr(kMusic + "tapped=no\n")));
    EXPECT_TRUE(model->lastRecordingURL.get());
}

TEST_F(ASession, EndsARecordingAtItsLimit) {
    say("tap 101");
    EXPECT_EQ(say("limit 2"), "limit=2\n");
    say("record 101 start");
    for (int tick = 0; tick < 30; ++tick) {
        server.advance(std::chrono::milliseconds(100));
        runLoop.advance(Seconds(0.1));
    }
    EXPECT_THAT(say("status 101"), HasSubstr(" recording=no"));
    EXPECT_TRUE(model->lastRecordingURL.get());
}

TEST_F(ASession, SaysWhatIsWrongAboutARecording) {
    say("tap 101");
    expectRefused("reveal", "No recording has been finished yet.");
    expectRefused("record 101 now", "\"now\" is neither start nor stop.");
    expectRefused("format flac", "There is no recording format \"flac\"; there are wav and m4a.");
    expectRefused("mode wet", "There is no recording mode \"wet\"; there are processed, original "
                              "and both.");
    expectRefused("folder \"\"", "A folder needs a name.");
    expectRefused("limit 0", "\"0\" is not a number from 1 to 1000000.");
}

TEST_F(ASession, SetsTheVolumeOfTheDevices) {
    EXPECT_EQ(say("master 50%"), "master=0.5\n");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.75F * 0.125F) << "the server's law is the cube";
    expectRefused("master 1.1", "\"1.1\" is not a number from 0 to 1.");
}

TEST_F(ASession, MutesAll) {
    say("tap 101");
    EXPECT_EQ(say("muteall on"), "muteall=on\n");
    EXPECT_EQ(say("muteall on"), "muteall=on\n");
    EXPECT_EQ(peakOn(speakers), 0.0F);
    EXPECT_EQ(say("muteall off"), "muteall=off\n");
    EXPECT_FLOAT_EQ(peakOn(speakers), 0.75F);
}

TEST_F(ASession, TapsWhateverPlaysWhenItIsTo) {
    EXPECT_EQ(say("autotap on"), "autotap=on\n");
    EXPECT_THAT(model->tappedPIDs.get(), ElementsAre(101, 102));
    EXPECT_EQ(say("autotap off"), "autotap=off\n");
    say("untap 101");
    runLoop.advance(Seconds(30));
    EXPECT_THAT(model->tappedPIDs.get(), ElementsAre(102));
}

TEST_F(ASession, KeepsProfiles) {
    say("tap 101");
    EXPECT_EQ(say("profiles"), "none\n");
    say("volume 101 0.5");
    EXPECT_EQ(say("profile save Evening moon"),
              "profile=\"Evening\" icon=moon applications=1 active=yes\n");
    say("volume 101 1.5");
    EXPECT_EQ(say("profile save \"Loud Day\" Day"),
              "profile=\"Loud Day\" icon=sun.max applications=1 active=yes\n");
    say("profile apply evening");
    EXPECT_THAT(say("status 101"), HasSubstr(" volume=0.5 "));
    say("volume 101 0.25");
    EXPECT_EQ(say("profile update Evening"),
              "profile=\"Evening\" icon=moon applications=1 active=yes\n");
    say("profile apply \"loud day\"");
    say("profile apply Evening");
    EXPECT_THAT(say("status 101"), HasSubstr(" volume=0.25 "));
    EXPECT_EQ(say("profile rename Evening EVENING"),
              "profile=\"EVENING\" icon=moon applications=1 active=yes\n");
    EXPECT_EQ(say("profile delete \"Loud Day\""), "profile=\"Loud Day\" deleted=yes\n");
    EXPECT_EQ(say("profiles"), "profile=\"EVENING\" icon=moon applications=1 active=yes\n");
}

TEST_F(ASession, KeepsProfilesApart) {
    say("profile save Evening");
    expectRefused("profile save evening", "There is a profile \"evening\" already.");
    expectRefused("profile save \" \"", "A profile needs a name.");
    expectRefused("profile save Day cake",
                  "There is no icon \"cake\"; there are Mixer, Gaming, Headphones, Laptop, Music, "
                  "Microphone, Meeting, Night, Day, Speakers, Media and Custom.");
    expectRefused("profile apply Day", "There is no profile \"Day\"; there is \"Evening\".");
    say("profile save Day");
    expectRefused("profile rename Day Evening", "There is a profile \"Evening\" already.");
    model->saveCurrentAsProfile("day", "moon");
    EXPECT_THAT(say("profile delete Day"), HasSubstr("There are 2 profiles \"Day\""));
}

TEST_F(ASession, HasTheTapsOfTheLastOneBack) {
    say("tap 101");
    say("volume 101 0.5");
    say("route 101 headphones");
    say("tap 102");
    say("untap 102");
    restart();
    EXPECT_THAT(say("status 101"),
                AllOf(HasSubstr(" volume=0.5 "), HasSubstr(" device=\"headphones\" ")));
    EXPECT_THAT(say("status 102"), HasSubstr(" tapped=no"));
}

TEST_F(ASession, LetsGoOfWhatHasEnded) {
    say("tap 101");
    server.exitProgram(music);
    expectRefused("volume 101 1", "There is no application \"101\"; there is \"Speech\" (102).");
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
}

TEST_F(ASession, HelpsWithEveryCommandOfItsTable) {
    const std::string help = say("help");
    for (const cli::Command& command : cli::commandTable())
        EXPECT_THAT(help, HasSubstr("  " + std::string(command.name) + " ")) << command.name;
}

TEST_F(ASession, SaysHowACommandIsWritten) {
    expectRefused("volume 101", "The command is: volume APP 0..2.");
    expectRefused("LIST all", "The command is: list.");
    expectRefused("profile", "There is no command \"profile\"; help tells of all.");
    expectRefused("dance", "There is no command \"dance\"; help tells of all.");
    EXPECT_EQ(say(""), "");
}

TEST_F(ASession, HasNoLevelsOfNothing) {
    expectRefused("levels", "Nothing is tapped.");
}

TEST_F(ASession, FindsNoCommandTwiceInItsTable) {
    std::vector<std::string_view> names;
    for (const cli::Command& command : cli::commandTable()) {
        EXPECT_THAT(names, Not(testing::Contains(command.name)));
        names.push_back(command.name);
        EXPECT_LE(command.fewest, command.most) << command.name;
    }
}

} // namespace
} // namespace orvanta::test
