// The curve editor, driven by pixels and buttons.
#include "curves/SplineEditModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/RawTable.h"

namespace velora {
namespace {

using Points = std::vector<tagVLRCurveCtrlPoint>;
using Pixel = SplineEditPixel;

std::string Text(std::span<const tagVLRCurveCtrlPoint> points) {
  std::string text;
  for (const auto& point : points) {
    if (!text.empty()) text += ' ';
    text += std::to_string(point.Sample);
    text += ':';
    text += std::to_string(point.Level);
  }
  return text;
}

class Recorder final : public I_SplineCtrlEditWndEvent {
 public:
  void OnMouseOverValue(uint32_t sample, uint8_t level) override { Note("over", sample, level); }
  void OnMouseLeavePlot() override { Append("leave"); }
  void OnPointAdded(uint32_t sample, uint8_t level) override { Note("add", sample, level); }
  void OnPointRemoved(uint32_t sample, uint8_t level) override { Note("remove", sample, level); }
  void OnPointMoved(uint32_t oldSample, uint8_t oldLevel, uint32_t sample, uint8_t level) override {
    Append("move " + Text(Points{{oldSample, oldLevel}, {sample, level}}));
  }

  std::string Take() {
    std::string text;
    text.swap(text_);
    return text;
  }

 private:
  void Note(const char* what, uint32_t sample, uint8_t level) {
    Append(std::string(what) + " " + Text(Points{{sample, level}}));
  }
  void Append(const std::string& entry) {
    if (!text_.empty()) text_ += ", ";
    text_ += entry;
  }

  std::string text_;
};

/// A client area in which each sample of the axis 0 to 255 and each level has a
/// pixel of its own.
constexpr int32_t kWidth = 262;
constexpr int32_t kHeight = 270;

Pixel At(int32_t sample, int32_t level) { return {3 + sample, 262 - level}; }

class SplineEdit : public ::testing::Test {
 protected:
  SplineEdit() {
    model.SetSampleRange(0, 255);
    model.SetClientSize(kWidth, kHeight);
    EXPECT_TRUE(model.InitCurves(0, 255));
    model.SetSink(&sink);
  }

  std::string Now() { return Text(model.GetPoints()); }
  void Set(const Points& points) { model.SetPoints(points); }

  Recorder sink;
  SplineEditModel model;
};

// --- Geometry ----------------------------------------------------------------

TEST(SplineEditGeometry, PixelsAndValues) {
  const struct {
    const char* what;
    int32_t width, height;
    uint32_t first, last;
    Pixel pixel;
    bool inside;
    tagVLRCurveCtrlPoint value;
  } cases[] = {
      {"lower left", 262, 270, 0, 255, {3, 262}, true, {0, 0}},
      {"upper right", 262, 270, 0, 255, {258, 7}, true, {255, 255}},
      {"left of it", 262, 270, 0, 255, {2, 100}, false, {0, 162}},
      {"right of it", 262, 270, 0, 255, {259, 100}, false, {255, 162}},
      {"above it", 262, 270, 0, 255, {100, 6}, false, {97, 255}},
      {"below it", 262, 270, 0, 255, {100, 263}, false, {97, 0}},
      {"far away", 262, 270, 0, 255, {INT32_MIN, INT32_MAX}, false, {0, 0}},
      {"odd height, first row left out", 262, 271, 0, 255, {3, 7}, false, {0, 255}},
      {"odd height, top", 262, 271, 0, 255, {3, 8}, true, {0, 255}},
      {"odd height, bottom", 262, 271, 0, 255, {3, 263}, true, {0, 0}},
      {"the quotient is rounded before it is multiplied",
       107,
       115,
       0,
       255,
       {53, 57},
       true,
       {127, 129}},
      {"axis that begins elsewhere", 107, 115, 1000, 1010, {53, 57}, true, {1005, 129}},
      {"axis of all samples", 107, 115, 0, UINT32_MAX, {103, 57}, true, {UINT32_MAX, 129}},
      {"smallest plot", 8, 16, 0, 255, {4, 7}, true, {255, 255}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const SplineEditGeometry geometry(test.width, test.height, test.first, test.last);
    EXPECT_EQ(geometry.Contains(test.pixel), test.inside);
    const auto value = geometry.ValueAt(test.pixel);
    ASSERT_TRUE(value);
    EXPECT_EQ(Text(Points{*value}), Text(Points{test.value}));
  }
}

TEST(SplineEditGeometry, ClientAreasWithoutAPlotHaveNoValues) {
  for (const auto& [width, height] : std::vector<std::pair<int32_t, int32_t>>{
           {7, 100}, {100, 15}, {0, 0}, {-5, -5}, {100, INT32_MIN}, {INT32_MIN, 100}}) {
    const SplineEditGeometry geometry(width, height, 0, 255);
    EXPECT_FALSE(geometry.HasPlot());
    EXPECT_FALSE(geometry.Contains({3, 7}));
    EXPECT_FALSE(geometry.ValueAt({3, 7}));
  }
}

TEST(SplineEditGeometry, ValuesAreDrawnWhereTheyAreRead) {
  for (const int32_t height : {270, 271, 800}) {
    for (const int32_t width : {262, 700}) {
      const SplineEditGeometry geometry(width, height, 0, 255);
      for (uint32_t i = 0; i < 256; ++i) {
        const tagVLRCurveCtrlPoint point = {i, static_cast<uint8_t>(255 - i)};
        const Pixel pixel = geometry.PixelOf(point);
        ASSERT_TRUE(geometry.Contains(pixel)) << i;
        ASSERT_EQ(geometry.ValueAt(pixel), point) << width << " x " << height << ", " << i;
      }
    }
  }
}

TEST(SplineEditGeometry, HitBoxes) {
  const struct {
    const char* what;
    int32_t height;
    tagVLRCurveCtrlPoint point;
    int32_t left, right, top, bottom;  // the pixels that still hit
  } cases[] = {
      {"even height", 270, {100, 50}, 98, 108, 207, 217},
      {"odd height, a row lower", 271, {100, 50}, 98, 108, 209, 219},
      {"at the lower left", 270, {0, 0}, -2, 8, 257, 267},
      {"at the upper right", 270, {255, 255}, 253, 263, 2, 12},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const SplineEditGeometry geometry(kWidth, test.height, 0, 255);
    const int32_t x = (test.left + test.right) / 2;
    const int32_t y = (test.top + test.bottom) / 2;
    EXPECT_TRUE(geometry.Hits({test.left, test.top}, test.point));
    EXPECT_TRUE(geometry.Hits({test.right, test.bottom}, test.point));
    EXPECT_FALSE(geometry.Hits({test.left - 1, y}, test.point));
    EXPECT_FALSE(geometry.Hits({test.right + 1, y}, test.point));
    EXPECT_FALSE(geometry.Hits({x, test.top - 1}, test.point));
    EXPECT_FALSE(geometry.Hits({x, test.bottom + 1}, test.point));
  }
  // Left of an axis that begins later nothing can be hit, though the pixel would fit.
  const SplineEditGeometry late(kWidth, kHeight, 1000, 1255);
  EXPECT_TRUE(late.Hits({3, 262}, {1000, 0}));
  EXPECT_FALSE(late.Hits({3, 262}, {999, 0}));
}

// --- Mouse -------------------------------------------------------------------

/// Presses at a place, moves through others, lets go; what the sink hears and what
/// points are left.
TEST_F(SplineEdit, Drags) {
  const struct {
    const char* what;
    Points points;
    Pixel press;
    std::vector<Pixel> path;
    const char* events;
    const char* after;
    int32_t held;  // before letting go
  } cases[] = {
      {"adds a point",
       {{0, 0}, {255, 255}},
       At(100, 30),
       {},
       "add 100:30",
       "0:0 100:30 255:255",
       1},
      {"adds between its neighbours",
       {{0, 0}, {50, 1}, {200, 2}, {255, 255}},
       At(120, 90),
       {},
       "add 120:90",
       "0:0 50:1 120:90 200:2 255:255",
       2},
      {"adds and drags",
       {{0, 0}, {255, 255}},
       At(100, 30),
       {At(102, 40)},
       "add 100:30, over 102:40, move 100:30 102:40",
       "0:0 102:40 255:255",
       1},
      {"takes a point that is near",
       {{0, 0}, {100, 50}, {255, 255}},
       At(104, 47),
       {},
       "move 100:50 104:47",
       "0:0 104:47 255:255",
       1},
      {"takes the point of the same sample",
       {{0, 0}, {100, 50}, {255, 255}},
       At(100, 200),
       {},
       "move 100:50 100:200",
       "0:0 100:200 255:255",
       1},
      {"takes the first of two that are near",
       {{0, 0}, {100, 50}, {103, 50}, {255, 255}},
       At(102, 50),
       {},
       "move 100:50 102:50",
       "0:0 102:50 103:50 255:255",
       1},
      {"an end keeps its sample",
       {{0, 0}, {255, 255}},
       At(2, 3),
       {At(90, 70)},
       "move 0:0 0:3, over 90:70, move 0:3 0:70",
       "0:70 255:255",
       0},
      {"so does the other",
       {{0, 0}, {255, 255}},
       At(255, 100),
       {At(1, 5)},
       "move 255:255 255:100, over 1:5, move 255:100 255:5",
       "0:0 255:5",
       1},
      {"stops in front of the right end",
       {{0, 0}, {100, 50}, {255, 255}},
       At(100, 50),
       {{5000, 262}},
       "move 100:50 100:50, leave, move 100:50 254:0",
       "0:0 254:0 255:255",
       1},
      {"stops behind the left end",
       {{0, 0}, {100, 50}, {255, 255}},
       At(100, 50),
       {{-9, -9}},
       "move 100:50 100:50, leave, move 100:50 1:255",
       "0:0 1:255 255:255",
       1},
      {"passes a neighbour on its left",
       {{0, 0}, {50, 5}, {100, 10}, {255, 255}},
       At(100, 10),
       {At(40, 10)},
       "move 100:10 100:10, over 40:10, move 100:10 40:10",
       "0:0 40:10 50:5 255:255",
       1},
      {"passes two on its right",
       {{0, 0}, {50, 5}, {100, 10}, {150, 15}, {255, 255}},
       At(50, 5),
       {At(160, 5)},
       "move 50:5 50:5, over 160:5, move 50:5 160:5",
       "0:0 100:10 150:15 160:5 255:255",
       3},
      {"and goes on after that",
       {{0, 0}, {50, 5}, {100, 10}, {255, 255}},
       At(50, 5),
       {At(120, 5), At(60, 6)},
       "move 50:5 50:5, over 120:5, move 50:5 120:5, over 60:6, move 120:5 60:6",
       "0:0 60:6 100:10 255:255",
       1},
      {"dropped on a twin from the left",
       {{0, 0}, {50, 5}, {100, 10}, {255, 255}},
       At(50, 5),
       {At(100, 5)},
       "move 50:5 50:5, over 100:5, move 50:5 100:5",
       "0:0 100:10 100:5 255:255",
       2},
      {"dropped on a twin from the right",
       {{0, 0}, {50, 5}, {100, 10}, {255, 255}},
       At(100, 10),
       {At(50, 90)},
       "move 100:10 100:10, over 50:90, move 100:10 50:90",
       "0:0 50:5 50:90 255:255",
       2},
      {"outside the plot a point is held but stays",
       {{0, 0}, {255, 255}},
       {1, 263},
       {At(0, 9)},
       "over 0:9, move 0:0 0:9",
       "0:9 255:255",
       0},
      {"outside with no point near",
       {{0, 0}, {255, 255}},
       {100, 268},
       {At(9, 9)},
       "over 9:9",
       "0:0 255:255",
       -1},
      {"adds to the end of points that end early",
       {{0, 0}, {80, 8}},
       At(90, 9),
       {},
       "add 90:9",
       "0:0 80:8 90:9",
       2},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    Set(test.points);
    sink.Take();
    model.OnLeftDown(test.press);
    for (const Pixel pixel : test.path) model.OnMouseMove(pixel);
    EXPECT_EQ(sink.Take(), test.events);
    EXPECT_EQ(Now(), test.after);
    EXPECT_EQ(model.GetDragIndex(), test.held);
    EXPECT_EQ(model.IsDragging(), test.held >= 0);
    model.OnLeftUp();
    EXPECT_FALSE(model.IsDragging());
    model.OnMouseMove(At(7, 7));
    EXPECT_EQ(sink.Take(), "over 7:7");
    EXPECT_EQ(Now(), test.after);
  }
}

TEST_F(SplineEdit, TheRightButtonRemovesInnerPoints) {
  const struct {
    const char* what;
    Pixel pixel;
    const char* events;
    const char* after;
  } cases[] = {
      {"an inner point", At(103, 47), "remove 100:50", "0:0 255:255"},
      {"the first", At(0, 0), "", "0:0 100:50 255:255"},
      {"the last", At(255, 255), "", "0:0 100:50 255:255"},
      {"nothing near, though of the same sample", At(100, 90), "", "0:0 100:50 255:255"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    Set({{0, 0}, {100, 50}, {255, 255}});
    model.OnRightDown(test.pixel);
    EXPECT_EQ(sink.Take(), test.events);
    EXPECT_EQ(Now(), test.after);
  }
  // Not while a point is held.
  Set({{0, 0}, {100, 50}, {255, 255}});
  model.OnLeftDown(At(0, 0));
  model.OnRightDown(At(100, 50));
  EXPECT_EQ(Now(), "0:0 100:50 255:255");
}

TEST_F(SplineEdit, ANewPressForgetsTheOldOne) {
  model.OnLeftDown(At(100, 30));
  model.OnLeftDown({100, 268});  // no release was seen; nothing is there
  EXPECT_FALSE(model.IsDragging());
}

TEST_F(SplineEdit, PointsReplacedDuringADragAreNotTouchedBeyondTheirEnd) {
  Set({{0, 0}, {50, 5}, {100, 10}, {255, 255}});
  model.OnLeftDown(At(100, 10));
  EXPECT_EQ(model.GetDragIndex(), 2);
  Set({{0, 1}, {255, 2}});
  EXPECT_EQ(model.GetDragIndex(), 2);
  model.OnMouseMove(At(70, 70));
  EXPECT_EQ(Now(), "0:1 255:2");
  EXPECT_TRUE(model.InitCurves(3, 4));
  EXPECT_FALSE(model.IsDragging());
}

TEST_F(SplineEdit, ASinkMayReplaceTheCurvesInTheMiddleOfAMove) {
  class Resetter final : public I_SplineCtrlEditWndEvent {
   public:
    explicit Resetter(SplineEditModel& model) : model_(model) {}
    void OnMouseOverValue(uint32_t, uint8_t) override {
      model_.SetSampleRange(9, 9);
      EXPECT_FALSE(model_.InitCurves(1, 2));
    }
    void OnMouseLeavePlot() override {}
    void OnPointAdded(uint32_t, uint8_t) override {}
    void OnPointRemoved(uint32_t, uint8_t) override {}
    void OnPointMoved(uint32_t, uint8_t, uint32_t, uint8_t) override { ADD_FAILURE(); }

   private:
    SplineEditModel& model_;
  } resetter(model);
  model.SetSink(&resetter);
  model.OnLeftDown(At(100, 30));
  model.OnMouseMove(At(101, 31));
  EXPECT_TRUE(model.GetPoints().empty());
}

TEST_F(SplineEdit, ThePointerHasItsValueWrittenBesideIt) {
  EXPECT_EQ(model.PointerText(), "");
  model.OnMouseMove(At(17, 201));
  EXPECT_EQ(model.PointerText(), "(17, 201)");
  model.OnMouseMove({0, 0});
  EXPECT_EQ(model.PointerText(), "");
}

// --- Points ------------------------------------------------------------------

TEST_F(SplineEdit, PointsGoInAndOut) {
  EXPECT_EQ(Now(), "0:0 255:255");
  const Points points = {{0, 9}, {3, 8}, {200, 7}, {255, 6}};
  Set(points);
  EXPECT_EQ(Now(), Text(points));
  EXPECT_EQ(model.GetPoints()[1].Level, 8);

  model.SetPoints(model.Points());  // its own
  EXPECT_EQ(Now(), Text(points));
  model.ResetPoints();
  EXPECT_EQ(Now(), "0:9 255:6");
  model.ResetPoints();
  EXPECT_EQ(Now(), "0:9 255:6");

  Set({{5, 5}});
  EXPECT_EQ(model.GetPoints().data(), nullptr);
  model.ResetPoints();
  EXPECT_EQ(model.Points().size(), 1u);
  EXPECT_EQ(sink.Take(), "");  // only the mouse makes events
}

TEST(SplineEditModel, WithoutCurvesNothingHappens) {
  const struct {
    uint32_t first, last;
  } axes[] = {{0, 0}, {5, 4}, {0, UINT32_MAX}, {0, 0x80000000u}};
  for (const auto& axis : axes) {
    SplineEditModel model;
    Recorder sink;
    model.SetSink(&sink);
    model.SetClientSize(kWidth, kHeight);
    model.SetSampleRange(axis.first, axis.last);
    EXPECT_FALSE(model.InitCurves(0, 255)) << axis.last;
    model.SetPoints(Points{{0, 0}, {255, 255}});
    model.OnLeftDown(At(1, 1));
    model.OnMouseMove(At(2, 2));
    model.OnRightDown(At(2, 2));
    model.OnLeftUp();
    model.ResetPoints();
    EXPECT_EQ(sink.Take(), "");
    EXPECT_TRUE(model.GetPoints().empty());
    EXPECT_TRUE(model.Columns().empty());
  }
}

// --- Picture -----------------------------------------------------------------

std::vector<int32_t> Highs(SplineEditModel& model) {
  std::vector<int32_t> highs;
  for (const WaveformColumn& column : model.Columns()) highs.push_back(column.High);
  return highs;
}

TEST_F(SplineEdit, ColumnsShowTheCurve) {
  std::vector<int32_t> line(256);
  for (int32_t i = 0; i < 256; ++i) line[static_cast<size_t>(i)] = i;
  EXPECT_EQ(Highs(model), line);

  Set({{0, 0}, {128, 255}, {255, 0}});
  const std::vector<int32_t> polyline = Highs(model);
  EXPECT_EQ(polyline[64], 128);  // 127.5 a sample earlier and later, rounded
  model.SetUseSpline(1);
  const std::vector<int32_t> spline = Highs(model);
  EXPECT_GT(spline[96], polyline[96] + 10);  // the smooth curve bulges
  EXPECT_EQ(spline[128], 255);

  // A drag shows at once, in both curves.
  model.OnLeftDown(At(128, 255));
  model.OnMouseMove(At(128, 40));
  EXPECT_EQ(Highs(model)[128], 40);
  model.SetUseSpline(0);
  EXPECT_EQ(Highs(model)[128], 40);
  model.OnLeftUp();
  model.OnRightDown(At(128, 40));
  EXPECT_EQ(Highs(model), std::vector<int32_t>(256, 0));
}

TEST_F(SplineEdit, ColumnsFillAPlotOfAnyWidth) {
  Set({{0, 77}, {255, 77}});
  for (const int32_t width : {8, 9, 20, 261, 263, 1500}) {
    model.SetClientSize(width, kHeight);
    const auto columns = model.Columns();
    ASSERT_EQ(columns.size(), static_cast<size_t>(width - 6));
    for (const WaveformColumn& column : columns) {
      ASSERT_EQ(int32_t{column.Low}, 77);
      ASSERT_EQ(int32_t{column.High}, 77);
    }
  }
  for (const int32_t width : {INT32_MIN, 0, 7}) {
    model.SetClientSize(width, kHeight);
    EXPECT_TRUE(model.Columns().empty());
  }
}

TEST_F(SplineEdit, RepaintsWhenThePictureChanges) {
  model.TakeRepaint();
  EXPECT_FALSE(model.TakeRepaint());
  const std::vector<std::pair<const char*, void (*)(SplineEditModel&)>> changes = {
      {"pointer", [](SplineEditModel& m) { m.OnMouseMove(At(1, 1)); }},
      {"press",
       [](SplineEditModel& m) {
         m.OnLeftDown(At(40, 40));
         m.OnLeftUp();
       }},
      {"removal", [](SplineEditModel& m) { m.OnRightDown(At(40, 40)); }},
      {"reset", [](SplineEditModel& m) { m.ResetPoints(); }},
      {"points",
       [](SplineEditModel& m) {
         m.SetPoints(Points{{0, 1}, {255, 2}});
       }},
      {"spline", [](SplineEditModel& m) { m.SetUseSpline(1); }},
      {"grid", [](SplineEditModel& m) { m.SetShowGrid(1); }},
      {"size", [](SplineEditModel& m) { m.SetClientSize(300, 300); }},
  };
  for (const auto& [what, change] : changes) {
    change(model);
    EXPECT_TRUE(model.TakeRepaint()) << what;
  }
  model.OnRightDown(At(200, 200));
  EXPECT_FALSE(model.TakeRepaint()) << "nothing was there";
}

/// Any input at all keeps the order of the points, the ends and the axis.
TEST_F(SplineEdit, SurvivesAWildMouse) {
  std::mt19937 random(7);
  const auto coordinate = [&random] {
    const int32_t wild[] = {INT32_MIN, INT32_MAX, -1, 0};
    return random() % 20 ? static_cast<int32_t>(random() % 290) - 10 : wild[random() % 4];
  };
  for (int step = 0; step < 20000; ++step) {
    const Pixel pixel = {coordinate(), coordinate()};
    switch (random() % 8) {
      case 0:
        model.OnLeftDown(pixel);
        break;
      case 1:
        model.OnLeftUp();
        break;
      case 2:
        model.OnRightDown(pixel);
        break;
      case 3:
        if (random() % 100 == 0) {
          model.SetClientSize(static_cast<int32_t>(random() % 400),
                              static_cast<int32_t>(random() % 400));
        }
        break;
      default:
        model.OnMouseMove(pixel);
    }
    const auto points = model.GetPoints();
    ASSERT_GE(points.size(), 2u);
    ASSERT_EQ(uint32_t{points.front().Sample}, 0u);
    ASSERT_EQ(uint32_t{points.back().Sample}, 255u);
    ASSERT_TRUE(std::ranges::is_sorted(points, {}, [](const auto& p) { return p.Sample; }));
    ASSERT_LT(model.GetDragIndex(), static_cast<int32_t>(points.size()));
    for (size_t i = 1; i + 1 < points.size(); ++i) {
      ASSERT_GT(uint32_t{points[i].Sample}, 0u);
      ASSERT_LT(uint32_t{points[i].Sample}, 255u);
    }
    if (step % 50 == 0) model.Columns();
  }
}

// --- The table ---------------------------------------------------------------

TEST(SplineEditEvents, StandInTheirOrder) {
  Recorder sink;
  const test::RawTable table(static_cast<I_SplineCtrlEditWndEvent*>(&sink));
  table.Call<void>(0, uint32_t{70000}, uint8_t{200});
  EXPECT_EQ(sink.Take(), "over 70000:200");
  table.Call<void>(1);
  EXPECT_EQ(sink.Take(), "leave");
  table.Call<void>(2, uint32_t{1}, uint8_t{2});
  EXPECT_EQ(sink.Take(), "add 1:2");
  table.Call<void>(3, uint32_t{3}, uint8_t{4});
  EXPECT_EQ(sink.Take(), "remove 3:4");
  table.Call<void>(4, uint32_t{5}, uint8_t{6}, uint32_t{7}, uint8_t{8});
  EXPECT_EQ(sink.Take(), "move 5:6 7:8");
}

}  // namespace
}  // namespace velora
