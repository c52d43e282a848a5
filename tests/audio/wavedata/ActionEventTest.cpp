#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "audio/wavedata/ActionEventMgr.h"

namespace velora {
namespace {

std::vector<uint32_t> Samples(const C_ActionEventMgr& events) {
  std::vector<uint32_t> samples;
  for (const C_ActionEvent* event : events.Events()) samples.push_back(event->GetSample());
  return samples;
}

std::vector<int32_t> Types(const C_ActionEventMgr& events) {
  std::vector<int32_t> types;
  for (const C_ActionEvent* event : events.Events()) types.push_back(event->GetType());
  return types;
}

TEST(ActionEvent, Defaults) {
  const C_ActionEvent event;
  EXPECT_EQ(event.GetType(), -1);
  EXPECT_EQ(event.GetTimeMs(), 0xFFFFFFFFu);
  EXPECT_EQ(event.GetSample(), 0u);
  EXPECT_STREQ(event.GetText(), "");
}

TEST(ActionEvent, TheMasterPositionSurvivesTheRate) {
  C_ActionEventMgr events;
  events.SetSampleRate(8000);
  C_ActionEvent* timed = events.AddEventAtMs(1, 500, nullptr, 0);
  C_ActionEvent* placed = events.AddEventAtSample(2, 4000, "text", 7);
  EXPECT_EQ(timed->GetSample(), 4000u);
  EXPECT_EQ(placed->GetTimeMs(), 500u);
  events.SetSampleRate(16000);
  EXPECT_EQ(timed->GetSample(), 8000u);
  EXPECT_EQ(placed->GetSample(), 4000u);
  EXPECT_EQ(placed->GetTimeMs(), 250u);
  EXPECT_STREQ(placed->GetText(), "text");
  EXPECT_EQ(placed->GetParam(), 7);
}

TEST(ActionEvent, Conversions) {
  const struct {
    uint32_t rate, sample, ms;
  } toMs[] = {{8000, 7, 0},
              {8000, 4007, 500},
              {0, 5, 0},
              {44100, 44099, 999},
              {1, 4294968, 1000 * uint64_t{4294968} & 0xFFFFFFFF}};
  for (const auto& c : toMs) {
    C_ActionEvent event;
    event.SetSampleRate(c.rate);
    event.SetSample(c.sample);
    EXPECT_EQ(event.GetTimeMs(), c.ms);
  }
  C_ActionEvent event;
  event.SetTimeMs(0xFFFFFFFF);
  event.SetSampleRate(11025);
  EXPECT_EQ(event.GetSample(), static_cast<uint32_t>(uint64_t{11025} * 0xFFFFFFFF / 1000));
  event.SetSampleRate(0);
  EXPECT_EQ(event.GetSample(), 0u);
}

TEST(ActionEventMgr, KeepsTheOrder) {
  C_ActionEventMgr events;
  for (const uint32_t sample : {10, 30, 20}) events.AddEventAtSample(0, sample, "", 0);
  EXPECT_EQ(Samples(events), (std::vector<uint32_t>{10, 20, 30}));
}

TEST(ActionEventMgr, EqualSamplesAtTheEndKeepTheirOrder) {
  C_ActionEventMgr events;
  const uint32_t samples[] = {20, 20, 10, 20};
  for (int32_t i = 0; i < 4; ++i) events.AddEventAtSample(i, samples[i], "", 0);
  EXPECT_EQ(Types(events), (std::vector<int32_t>{2, 0, 1, 3}));
}

TEST(ActionEventMgr, EqualSamplesInsideGoAhead) {
  C_ActionEventMgr events;
  int32_t type = 0;
  for (const uint32_t sample : {10, 20, 20, 20, 30, 20, 20, 10}) {
    events.AddEventAtSample(type++, sample, "", 0);
  }
  EXPECT_EQ(Types(events), (std::vector<int32_t>{7, 0, 6, 5, 1, 2, 3, 4}));
}

TEST(ActionEventMgr, EqualTimesGoWhereTheSearchHits) {
  C_ActionEventMgr events;
  int32_t type = 0;
  // Of five the middle one is hit first; then of six the one at (0 + 5) / 2.
  for (const uint32_t ms : {20, 20, 20, 20, 30, 20, 20}) events.AddEventAtMs(type++, ms, "", 0);
  EXPECT_EQ(Types(events), (std::vector<int32_t>{0, 1, 6, 5, 2, 3, 4}));
}

TEST(ActionEventMgr, RandomOrderMatchesAStableModel) {
  std::mt19937 random(7);
  C_ActionEventMgr events;
  std::vector<std::pair<uint32_t, int32_t>> model;
  for (int32_t i = 0; i < 2000; ++i) {
    const uint32_t sample = random() % 500;
    ASSERT_NE(events.AddEventAtSample(i, sample, "", 0), nullptr);
    const bool last = model.empty() || sample >= model.back().first;
    const auto place = last ? model.end()
                            : std::find_if(model.begin(), model.end(),
                                           [&](const auto& e) { return e.first >= sample; });
    model.insert(place, {sample, i});
  }
  for (size_t i = 0; i < model.size(); ++i) {
    ASSERT_EQ(events.Events()[i]->GetSample(), model[i].first);
    ASSERT_EQ(events.Events()[i]->GetType(), model[i].second);
  }
}

TEST(ActionEventMgr, InsertionMovesTheCursor) {
  C_ActionEventMgr events;
  for (const uint32_t sample : {10, 20, 30}) events.AddEventAtSample(0, sample, "", 0);
  I_CUList<I_ActionEvent>* list = events.GetEvents();
  list->Rewind();
  list->GetNext();
  EXPECT_EQ(list->GetNext()->GetSample(), 20u);
  events.AddEventAtSample(0, 5, "", 0);
  EXPECT_EQ(list->GetNext()->GetSample(), 30u);
}

TEST(ActionEventMgr, IdsAndRemoval) {
  C_ActionEventMgr events;
  const uint32_t first = events.AddEventAtSample(1, 10, "", 0)->GetId();
  const uint32_t second = events.AddEventAtSample(2, 20, "", 0)->GetId();
  EXPECT_EQ(events.GetEventById(second)->GetType(), 2);
  EXPECT_EQ(events.RemoveEvent(first), 1);
  EXPECT_EQ(events.RemoveEvent(first), 0);
  EXPECT_EQ(events.GetEventById(first), nullptr);
  EXPECT_EQ(events.AddEventAtSample(3, 30, "", 0)->GetId(), first);  // given back, so used first
  events.ClearEvents();
  EXPECT_EQ(events.GetEvents()->GetCount(), 0);
}

TEST(ActionEventMgr, AFindRenumbersWhatItFinds) {
  C_ActionEventMgr events;
  events.SetSampleRate(1000);
  for (const int32_t type : {5, 6, 5}) events.AddEventAtSample(type, 10, "", 0);
  I_CUList<I_ActionEvent>* found = events.FindEventsByType(5);
  ASSERT_EQ(found->GetCount(), 2);
  EXPECT_EQ(found->GetAt(0)->GetId(), 1u);
  EXPECT_EQ(found->GetAt(1)->GetId(), 2u);
  EXPECT_EQ(found->GetAt(1), events.Events()[2]);
  EXPECT_EQ(events.FindEventsBySample(10)->GetCount(), 3);
  EXPECT_EQ(events.FindEventsByTimeMs(10), found);  // one result list for all
  EXPECT_EQ(events.FindEventsByTimeMs(11)->GetCount(), 0);
}

TEST(ActionEventMgr, AddEventsMakesTimeEvents) {
  C_ActionEventMgr source;
  source.SetSampleRate(8000);
  source.AddEventAtSample(1, 4007, "one", 3);
  source.AddEventAtSample(2, 8000, "two", 4);
  C_ActionEventMgr target;
  target.SetSampleRate(8000);
  EXPECT_EQ(target.AddEvents(source.GetEvents()), 1);
  EXPECT_EQ(Samples(target), (std::vector<uint32_t>{4000, 8000}));  // whole milliseconds
  EXPECT_STREQ(target.Events()[0]->GetText(), "one");
  EXPECT_EQ(target.Events()[1]->GetParam(), 4);
  EXPECT_EQ(target.AddEvents(target.GetEvents()), 1);  // its own list: once each
  EXPECT_EQ(target.GetEvents()->GetCount(), 4);
  EXPECT_EQ(target.AddEvents(nullptr), 0);
}

TEST(ActionEventMgr, CopiesEvents) {
  C_ActionEventMgr source;
  source.SetSampleRate(8000);
  source.AddEventAtMs(1, 100, "text", 2)->SetExtra(9);
  source.FindEventsByType(1);
  source.AddSilenceRegion(1, 1);
  const C_ActionEventMgr copy(source.Events());
  ASSERT_EQ(copy.Events().size(), 1u);
  const C_ActionEvent& event = *copy.Events()[0];
  EXPECT_STREQ(event.GetText(), "text");
  EXPECT_EQ(event.GetExtra(), 9u);
  EXPECT_EQ(event.GetSample(), 800u);
  EXPECT_EQ(copy.GetSampleRate(), 0u);
  EXPECT_TRUE(copy.Regions().empty());
}

TEST(ActionEventMgr, Regions) {
  C_ActionEventMgr events;
  for (const uint32_t start : {10, 30, 20, 20}) events.AddSilenceRegion(start, start + 1);
  ASSERT_EQ(events.Regions().size(), 4u);
  EXPECT_EQ(events.Regions()[3]->GetStart(), 30u);
  const uint32_t id = events.Regions()[3]->GetId();
  EXPECT_EQ(events.GetSilenceRegionById(id)->GetStart(), 30u);
  EXPECT_EQ(events.RemoveSilenceRegion(id), 1);
  EXPECT_EQ(events.RemoveSilenceRegion(id), 0);
  I_CUList<I_ActionSilenceRegion>* found = events.FindSilenceRegionsByStart(20);
  ASSERT_EQ(found->GetCount(), 2);
  EXPECT_EQ(found->GetAt(0)->GetLength(), 21u);
  events.AddEventAtSample(1, 1, "", 0);
  events.FindEventsByType(1);
  EXPECT_EQ(found->GetCount(), 2);  // finds of events leave it
  EXPECT_EQ(events.AddSilenceRegions(events.GetSilenceRegions()), 1);
  EXPECT_EQ(events.Regions().size(), 6u);
  events.ClearSilenceRegions();
  EXPECT_TRUE(events.Regions().empty());
}

}  // namespace
}  // namespace velora
