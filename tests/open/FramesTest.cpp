#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <map>

#include "tests/open/EngineRig.h"
#include "tests/open/OutputRig.h"
#include "tests/wire/FrameFileBuilder.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

FrameFileBuilder Frames(std::vector<std::vector<uint8_t>> frames) {
  FrameFileBuilder builder;
  builder.Frames = std::move(frames);
  return builder;
}

TEST(Frames, EachChangedChannelIsOneEvent) {
  EngineRig rig;
  rig.Play(Frames({{0, 51, 255}, {0, 51, 102}, {0, 51, 102}, {51, 0, 102}}).Build());
  rig.Advance(200);
  EXPECT_THAT(rig.Lights->Take(),
              ElementsAre("0: 1.2 20>20 1", "0: 1.3 100>100 1", "0: flush", "25: 1.3 40>40 1", "25: flush",
                          "75: 1.1 20>20 1", "75: 1.2 0>0 1", "75: flush"));
}

TEST(Frames, LastAsLongAsTheirSteps) {
  EngineRig rig;
  FrameFileBuilder builder = Frames({{1}, {2}, {3}});
  builder.StepMs = 50;
  rig.Play(builder.Build());
  EXPECT_EQ(rig.Engine->Length(), 150);
  rig.Advance(149);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  rig.Advance(1);
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(Frames, UseTheMainNetworksAndNameTheirMedia) {
  EngineRig rig;
  FrameFileBuilder builder = Frames({{1}});
  builder.Headers = {{"mf", std::string("F\xC3\xBCr Elise.ogg\0", 15)}};
  rig.Load(builder.Build());
  EXPECT_TRUE(rig.Engine->UsesNetwork(NetworkKind::Main));
  EXPECT_FALSE(rig.Engine->UsesNetwork(NetworkKind::X10));
  EXPECT_EQ(rig.Engine->MediaFile(), "F\xFCr Elise.ogg");
  builder.Headers = {{"mf", std::string("F\xFCr Elise.ogg\0", 14)}};
  rig.Load(builder.Build());
  EXPECT_EQ(rig.Engine->MediaFile(), "F\xFCr Elise.ogg") << "single bytes of an older program";
}

TEST(Frames, ChannelsLieInUnitsOf512) {
  EngineRig rig;
  std::vector<uint8_t> frame(1025);
  frame[511] = frame[512] = frame[1024] = 255;
  rig.Play(Frames({frame}).Build());
  EXPECT_THAT(rig.Lights->Take(),
              ElementsAre("0: 1.512 100>100 1", "0: 2.1 100>100 1", "0: 3.1 100>100 1", "0: flush"));
}

TEST(Frames, SparseRangesHaveTheirPlaces) {
  EngineRig rig;
  FrameFileBuilder builder = Frames({{255, 51, 102}});
  builder.Ranges = {{511, 2}, {3, 1}};
  rig.Play(builder.Build(), false, true);
  EXPECT_THAT(rig.Lights->Take(),
              ElementsAre("0: 1.512 100>100 1", "0: 2.1 20>20 1", "0: 1.4 40>40 1", "0: flush"));
}

TEST(Frames, LightsOffPutsOutWhatTheyLit) {
  EngineRig rig;
  rig.Play(Frames({{0, 255}, {51, 255}, {0, 255}}).Build(), false, true);
  rig.Advance(74);
  rig.Lights->Take();
  rig.Advance(1);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("75: 1.1 0>0 1", "75: 1.2 0>0 1", "75: flush"));
}

TEST(Frames, ALoopSetsOnlyWhatChanges) {
  EngineRig rig;
  rig.Play(Frames({{255, 51}, {255, 102}}).Build(), true);
  rig.Advance(49);
  rig.Lights->Take();
  rig.Advance(1);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("50: 1.2 20>20 1", "50: flush"));
}

TEST(Frames, PlayedAgainTheFirstFrameSetsWhatIsAndWhatWasLit) {
  EngineRig rig;
  rig.Play(Frames({{51, 0, 0}, {51, 51, 0}}).Build());
  rig.Advance(50);
  rig.Lights->Take();
  rig.Engine->PrepareForPlay(false);
  rig.Engine->Start();
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("50: 1.1 20>20 1", "50: 1.2 0>0 1", "50: flush"));
}

TEST(Frames, AfterLightsOffTheFirstFrameSetsWhatIsLit) {
  EngineRig rig;
  rig.Play(Frames({{51, 0}, {51, 51}}).Build(), false, true);
  rig.Advance(50);
  rig.Lights->Take();
  rig.Engine->PrepareForPlay(false);
  rig.Engine->Start();
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("50: 1.1 20>20 1", "50: flush"));
}

TEST(Frames, FollowTheMusic) {
  EngineRig rig;
  rig.PlayMusic(Frames({{51}, {102}, {102}, {255}}).Build());
  EXPECT_THAT(rig.Sync(0), ElementsAre("1.1 20>20@0"));
  EXPECT_EQ(rig.Engine->NextEventDue(), NextDue::At(25));
  EXPECT_THAT(rig.Sync(24), IsEmpty());
  EXPECT_THAT(rig.Sync(25), ElementsAre("1.1 40>40@25"));
  EXPECT_THAT(rig.Sync(60), IsEmpty());
  EXPECT_THAT(rig.Sync(80), ElementsAre("1.1 100>100@75"));
  EXPECT_TRUE(rig.Engine->NextEventDue().IsNever());
}

TEST(Frames, OfFramesPassedBetweenTwoLooksTheLastIsHandedOut) {
  EngineRig rig;
  rig.PlayMusic(Frames({{51}, {102}, {255}, {255}}).Build());
  EXPECT_THAT(rig.Sync(60), ElementsAre("1.1 100>100@50"));
}

TEST(Frames, BegunInTheMiddleTheFrameInForceIsHandedOut) {
  EngineRig rig;
  rig.PlayMusic(Frames({{51}, {102}, {255}, {51}}).Build());
  rig.Engine->InitMusicSync(60);
  EXPECT_THAT(rig.Sync(60), ElementsAre("1.1 100>100@50"));
  rig.Engine->InitMusicSync(99999);
  EXPECT_THAT(rig.Sync(99999), ElementsAre("1.1 20>20@75"));
}

struct CueRig : EngineRig {
  void PutFrames(const std::string& szPath) { Host.Files().Put(szPath, Frames({{51}, {102}}).Build()); }
};

TEST(FramesOfACueFile, AreFoundAsSequencesAreAndBesideIt) {
  for (const char* path : {"C:\\seq\\t.fseq", "C:\\media\\t.fseq", "D:\\show\\t.fseq"}) {
    CueRig rig;
    rig.PutFrames(path);
    rig.Host.Files().Put("D:\\show\\a.vexseq", R"({"frames":"t.fseq"})");
    rig.Engine->Load("D:\\show\\a.vexseq");
    EXPECT_EQ(rig.Engine->Length(), 50) << path;
    EXPECT_TRUE(rig.Engine->UsesNetwork(NetworkKind::Main));
  }
}

TEST(FramesOfACueFile, AreMissedByName) {
  CueRig rig;
  rig.Put(R"({"duration":1,"frames":"t.fseq"})");
  EXPECT_THAT(rig.LoadFailure(), HasSubstr("Sequence.Load 53: Sequence file \"t.fseq\": File not found"));
}

TEST(FramesOfACueFile, MustBeFrames) {
  CueRig rig;
  rig.Put(R"({"duration":1,"frames":"a.vexseq"})");
  EXPECT_THAT(rig.LoadFailure(), HasSubstr("it is no frame file"));
}

TEST(FramesOfACueFile, DoNotChangeItsDurationOrMedia) {
  CueRig rig;
  FrameFileBuilder builder = Frames({{51}});
  builder.Headers = {{"mf", std::string("x.ogg\0", 6)}};
  rig.Host.Files().Put("C:\\seq\\t.fseq", builder.Build());
  rig.Load(R"({"duration":1.5,"frames":"t.fseq"})");
  EXPECT_EQ(rig.Engine->Length(), 1500);
  EXPECT_EQ(rig.Engine->MediaFile(), "");
}

TEST(FramesOfACueFile, ComeBeforeEventsOfTheSameMomentAndShareTheirCircuits) {
  CueRig rig;
  rig.PutFrames("C:\\seq\\t.fseq");
  rig.Play(R"({"frames":"t.fseq","events":[{"from":90,"to":90},{"start":0.025,"from":80,"to":80},
                                           {"start":0.01,"circuit":9,"from":5,"to":5}]})",
           false, true);
  rig.Advance(50);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 1.1 20>20 1", "0: 1.1 90>90 1", "0: flush", "10: 1.9 5>5 1",
                                              "10: flush", "25: 1.1 40>40 1", "25: 1.1 80>80 1", "25: flush",
                                              "50: 1.1 0>0 1", "50: 1.9 0>0 1", "50: flush"));
}

FrameFileBuilder Damaged() {
  FrameFileBuilder builder = Frames({{51}, {102}, {255}, {51}});
  builder.Compression = FrameCompression::Zlib;
  builder.FramesPerBlock = 2;
  return builder;
}

std::string WithBadSecondBlock() {
  std::string szFile = Damaged().Build();
  szFile[szFile.size() - 9] = static_cast<char>(~szFile[szFile.size() - 9]);
  szFile[szFile.size() - 10] = static_cast<char>(~szFile[szFile.size() - 10]);
  return szFile;
}

TEST(DamagedFrames, AreToldWhenTheyFallDueAndNotBefore) {
  EngineRig rig;
  rig.Play(WithBadSecondBlock(), false, true);
  rig.Advance(49);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  rig.Lights->Take();
  rig.Advance(1);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("50: 1.1 0>0 1", "50: flush")) << "it ends as any other";
  try {
    (void)rig.Engine->PlayState();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Source, "Sequence.Play");
    EXPECT_THAT(error.Description, HasSubstr("\"a.vexseq\": damaged at frame 2; "));
  }
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(DamagedFrames, FailTheSyncThatReachesThem) {
  EngineRig rig;
  rig.PlayMusic(WithBadSecondBlock());
  EXPECT_EQ(rig.Sync(30).size(), 1U);
  EXPECT_THROW((void)rig.Sync(50), Error);
}

TEST(DamagedFrames, ABlockThatEndsEarlyIsDamaged) {
  FrameFileBuilder builder = Damaged();
  builder.Channels = 2;  // twice as many bytes are wanted as were packed
  EngineRig rig;
  rig.PlayMusic(builder.Build());
  EXPECT_EQ(rig.Sync(0).size(), 2U);
  EXPECT_THROW((void)rig.Sync(25), Error);
}

std::vector<std::vector<uint8_t>> AnyFrames() {
  const auto channels = *rc::gen::inRange<size_t>(1, 200);
  const auto count = *rc::gen::inRange<size_t>(1, 12);
  std::vector<std::vector<uint8_t>> frames(count);
  for (auto& frame : frames)
    frame = *rc::gen::container<std::vector<uint8_t>>(channels,
                                                      rc::gen::elementOf(std::vector<uint8_t>{0, 0, 1, 200}));
  return frames;
}

std::vector<std::string> Transcript(const FrameFileBuilder& builder) {
  EngineRig rig;
  rig.Play(builder.Build(), false, true);
  rig.Advance(1000);
  return rig.Lights->Take();
}

TEST(FramesProperties, PackedInAnyWayTheyPlayTheSame) {
  EXPECT_TRUE(rc::check([] {
    FrameFileBuilder builder = Frames(AnyFrames());
    const auto plain = Transcript(builder);
    builder.FramesPerBlock = *rc::gen::inRange<size_t>(1, 6);
    builder.StreamsPerBlock = *rc::gen::inRange<size_t>(1, 4);
    builder.PaddingBlocks = *rc::gen::inRange<size_t>(0, 3);
    for (const auto compression : {FrameCompression::Zstd, FrameCompression::Zlib}) {
      builder.Compression = compression;
      RC_ASSERT(Transcript(builder) == plain);
    }
  }));
}

TEST(FramesProperties, SparseFilesPlayAsFullOnesWithZerosBetween) {
  EXPECT_TRUE(rc::check([] {
    FrameFileBuilder sparse = Frames(AnyFrames());
    const auto channels = static_cast<uint32_t>(sparse.Frames[0].size());
    const auto cut = *rc::gen::inRange<uint32_t>(0, channels);
    const auto gap = *rc::gen::inRange<uint32_t>(0, 700);
    const auto offset = *rc::gen::inRange<uint32_t>(0, 700);
    sparse.Ranges = {{offset, cut}, {offset + cut + gap, channels - cut}};
    FrameFileBuilder full;
    for (const auto& frame : sparse.Frames) {
      std::vector<uint8_t> wide(offset + channels + gap);
      std::copy_n(frame.begin(), cut, wide.begin() + offset);
      std::copy(frame.begin() + cut, frame.end(), wide.begin() + offset + cut + gap);
      full.Frames.push_back(wide);
    }
    RC_ASSERT(Transcript(sparse) == Transcript(full));
  }));
}

TEST(FramesProperties, EveryFrameGoesOutToTheByte) {
  EXPECT_TRUE(rc::check([] {
    FrameFileBuilder builder = Frames(AnyFrames());
    builder.Compression = FrameCompression::Zstd;
    OutputRig output;
    EngineRig rig;
    rig.Host.Files().Put("C:\\seq\\a.fseq", builder.Build());
    OpenSequenceEngine engine(output.Host.Clock(), output.Host.EventLoop(), rig.Host.Files(),
                              [](const std::string& szName, bool) { return "C:\\seq\\" + szName; });
    engine.AttachControl(std::shared_ptr<ChannelIO>(std::move(output.Lights)));
    engine.Load("a.fseq");
    engine.PlayOptions(false, false);
    engine.PrepareForPlay(false);
    engine.Start();
    output.Advance(static_cast<int64_t>(builder.Frames.size()) * 25 + 24);
    std::vector<uint8_t> shown(512);
    std::map<int64_t, std::vector<uint8_t>> packets;
    for (const auto& packet : output.Packets(1)) packets[packet.AtMs] = packet.Slots;
    for (size_t i = 0; i < builder.Frames.size(); ++i) {
      const auto sent = packets.find(static_cast<int64_t>(i) * 25);
      if (sent != packets.end()) shown = sent->second;
      std::vector<uint8_t> expected = builder.Frames[i];
      expected.resize(512);
      RC_ASSERT(shown == expected);
    }
  }));
}

}  // namespace
}  // namespace vex
