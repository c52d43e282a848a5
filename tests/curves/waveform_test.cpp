// Waveform columns against a plain walk over the samples, and the zoom.
#include "curves/WaveformPresentationData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include "audio/wavedata/WavData.h"
#include "curves/WaveformPyramid.h"
#include "foundation/MessageBox.h"

namespace velora {

void PrintTo(const WaveformColumn& column, std::ostream* out) {
  *out << "{" << column.Low << ", " << column.High << ", " << int{column.Mark} << "}";
}

namespace {

using Columns = std::vector<WaveformColumn>;

WavDataPtr MakeSound(const std::vector<int16_t>& samples, uint16_t channels = 1) {
  WavDataPtr sound = C_WavData::Create();
  const auto bytes = static_cast<uint32_t>(2 * samples.size());
  sound->SetData(samples.data(), bytes);
  sound->SetFormat(8000, bytes, channels, 16, 16, 1);
  return sound;
}

std::vector<int16_t> RandomSamples(std::mt19937& random, size_t count) {
  const int32_t span = std::vector<int32_t>{1, 3, 200, 32768}[random() % 4];
  std::vector<int16_t> samples(count);
  for (int16_t& sample : samples) {
    const auto value = static_cast<int32_t>(random() % static_cast<uint32_t>(2 * span)) - span;
    sample = static_cast<int16_t>(std::clamp(value, -32768, 32767));
  }
  return samples;
}

/// The columns as they are defined, sample by sample, in an array that keeps what
/// no rule writes.
class PlainColumns {
 public:
  PlainColumns(std::vector<int16_t> samples, size_t room) : s_(std::move(samples)), c_(room) {}

  const Columns& All() const { return c_; }
  Columns Run(int64_t first, int64_t count) const {
    return {c_.begin() + first, c_.begin() + first + count};
  }

  /// Into the start of the array.
  void Make(int64_t width, int64_t first, int64_t count) {
    if (width < first + count) first = width - count;
    if (first < 0) first = 0;
    if (width > N()) {
      Interpolate(width, first, count);
    } else if (width == N()) {
      OneToOne(first, count);
    } else {
      Share(width, first, count);
    }
  }

 private:
  int64_t N() const { return static_cast<int64_t>(s_.size()); }
  int32_t S(int64_t i) const { return s_.at(static_cast<size_t>(std::min(i, N() - 1))); }
  static int16_t Short(int32_t v) { return static_cast<int16_t>(v); }

  void OneToOne(int64_t first, int64_t count) {
    for (int64_t c = 0; c < count; ++c) {
      const int64_t i = std::min(first + c, N() - 1);
      int32_t low = S(i), high = S(i);
      if (c > 0) {
        const int32_t m = (S(i - 1) + S(i)) / 2;
        if (m - 1 > S(i)) {
          high = m - 1;
        } else if (m + 1 < S(i)) {
          low = m + 1;
        }
      }
      if (i < N() - 1) {
        const int32_t m = (S(i) + S(i + 1)) / 2;
        if (m > high) {
          high = m;
        } else if (m < low) {
          low = m + 1;
        }
      }
      c_.at(c).Low = Short(low);
      c_.at(c).High = Short(high);
    }
  }

  void Share(int64_t width, int64_t first, int64_t count) {
    const int64_t nm = N() - 1, wm = width - 1, q = nm / wm, r = nm % wm;
    int64_t rem = r * first / wm;
    int64_t end = q * first + rem;
    int64_t prev = end - 1;
    for (int64_t c = 0; c < count; ++c) {
      const int64_t acc = r + rem;
      end = std::min(end + q + (acc >= wm ? 1 : 0), nm);
      c_.at(c).Mark = 0;
      Walk(c, prev, end);
      rem = acc >= wm ? acc - wm : acc;
      prev = end;
      if (first + c >= wm) c_.at(c).Low = c_.at(c).High = Short(S(nm));
    }
  }

  void Walk(int64_t c, int64_t a, int64_t b) {
    a = std::min(a, N() - 2);
    b = std::min(b, N() - 1);
    int32_t v = S(a + 1);
    int32_t lo = v, hi = v;
    if (a >= 0) {
      int32_t m = (S(a) + v) / 2;
      if (S(a) < v) {
        if (m == S(a) && m < v) ++m;
        lo = m;
      } else {
        if (m == S(a) && m > v) --m;
        hi = m;
      }
    }
    int64_t j = a + 2;
    for (; j <= b; ++j) {
      v = S(j);
      lo = std::min(lo, v);
      hi = std::max(hi, v);
    }
    if (j < N()) {
      int32_t m = (S(j) + v) / 2;
      if (v < S(j)) {
        if (m == S(j) && m > v) --m;
        hi = std::max(hi, m);
      } else {
        if (m == S(j) && m < v) ++m;
        lo = std::min(lo, m);
      }
    }
    c_.at(c).Low = Short(lo);
    c_.at(c).High = Short(hi);
  }

  void Interpolate(int64_t width, int64_t first, int64_t count) {
    const int64_t nm = N() - 1, wm = width - 1;
    int64_t idx = nm * first / wm;
    int64_t rem = nm * first % wm;
    if (rem == 0) {
      rem = wm;
    } else {
      ++idx;
    }
    int32_t pv = 0;
    for (int64_t c = 0; c < count; ++c) {
      WaveformColumn& column = c_.at(c);
      int32_t v = 0;
      if (rem < wm) {
        column.Mark = 0;
        const double t = static_cast<double>(rem) / static_cast<double>(wm);
        v = idx > nm ? S(nm) : static_cast<int32_t>(S(idx - 1) * (1 - t) + S(idx) * t + 0.5);
      } else {
        column.Mark = 4 * nm < wm ? 1 : 0;
        v = S(idx);
        ++idx;
        rem -= wm;
      }
      column.Low = column.High = Short(v);
      if (c > 0 && pv < v) {
        column.Low = Short(pv + 1);
        if (column.Mark == 1) column.Mark = 2;
      } else if (c > 0 && pv > v) {
        column.High = Short(pv - 1);
      }
      rem += nm;
      pv = v;
    }
  }

  std::vector<int16_t> s_;
  Columns c_;
};

/// A view of a sound of its own.
struct View {
  explicit View(const std::vector<int16_t>& samples, int32_t width = 0)
      : sound(MakeSound(samples)) {
    EXPECT_EQ(data.Attach(sound.get()), kWaveformDone);
    if (width) {
      EXPECT_EQ(data.SetViewWidth(width), kWaveformDone);
    }
  }

  Columns At(int32_t zoom, int32_t first, int32_t count) {
    const WaveformColumn* const columns = data.GetColumnsAt(zoom, first, count);
    return columns ? Columns(columns, columns + count) : Columns();
  }
  Columns Shown(int32_t first) {
    const WaveformColumn* const columns = data.GetColumns(first);
    return columns ? Columns(columns, columns + data.GetViewWidth()) : Columns();
  }

  WavDataPtr sound;
  C_VLRWaveformPresentationData data;
};

/// Remembers the last box.
class Boxes final : public I_WindowHost {
 public:
  Boxes() { SetBoxOwner(this); }
  ~Boxes() { SetBoxOwner(nullptr); }
  int32_t ShowBox(const char* text, const char*, uint32_t style) override {
    lastText = text;
    lastStyle = style;
    return kAnswerOk;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }

  std::string lastText;
  uint32_t lastStyle = 0;
};

// --- Columns -----------------------------------------------------------------

TEST(WaveformColumns, HandWorkedExamples) {
  const struct {
    const char* what;
    std::vector<int16_t> samples;
    int32_t zoom;
    Columns expected;
  } cases[] = {
      {"one sample each",
       {0, 10, 20, 10, 0},
       5,
       {{0, 5, 0}, {6, 15, 0}, {16, 20, 0}, {6, 14, 0}, {0, 4, 0}}},
      {"three samples each", {0, 4, 8, 100, -50, 6, 6}, 3, {{0, 100, 0}, {-50, 25, 0}, {6, 6, 0}}},
      {"halves of odd sums", {0, 0, 0, -3, -3}, 3, {{-1, 0, 0}, {-3, -1, 0}, {-3, -3, 0}}},
      {"half a step is never none", {0, 0, 0, 1, 1}, 3, {{0, 0, 0}, {1, 1, 0}, {1, 1, 0}}},
      {"four columns to a sample",
       {0, 8},
       5,
       {{0, 0, 0}, {1, 2, 0}, {3, 4, 0}, {5, 6, 0}, {7, 8, 0}}},
      {"more than four, rising",
       {0, 8},
       6,
       {{0, 0, 1}, {1, 2, 0}, {3, 3, 0}, {4, 5, 0}, {6, 6, 0}, {7, 8, 2}}},
      {"more than four, falling",
       {8, 0},
       6,
       {{8, 8, 1}, {6, 7, 0}, {5, 5, 0}, {3, 4, 0}, {2, 2, 0}, {0, 1, 1}}},
      {"a negative constant rounds up between samples",
       {-5, -5},
       3,
       {{-5, -5, 0}, {-4, -4, 0}, {-5, -5, 0}}},
      {"a single sample", {7}, 3, {{7, 7, 1}, {7, 7, 0}, {7, 7, 0}}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    View view(test.samples);
    EXPECT_EQ(view.At(test.zoom, 0, test.zoom), test.expected);
  }
}

TEST(WaveformColumns, PyramidGivesTheRangeOfAWalk) {
  std::mt19937 random(1);
  for (const size_t count : {1u, 63u, 64u, 65u, 128u, 4095u, 4096u, 4097u, 5000u, 270000u}) {
    const std::vector<int16_t> samples = RandomSamples(random, count);
    const WaveformPyramid pyramid(samples);
    for (int trial = 0; trial < 300; ++trial) {
      size_t first = random() % count;
      size_t last = trial % 3 ? random() % count : std::min(count - 1, first + random() % 200);
      if (last < first) std::swap(first, last);
      if (trial == 0) first = 0, last = count - 1;
      const auto [low, high] =
          std::minmax_element(samples.begin() + static_cast<ptrdiff_t>(first),
                              samples.begin() + static_cast<ptrdiff_t>(last) + 1);
      const WaveformPyramid::Range range = pyramid.RangeOf(first, last);
      ASSERT_EQ(range.low, *low) << count << ": " << first << " to " << last;
      ASSERT_EQ(range.high, *high) << count << ": " << first << " to " << last;
    }
  }
}

TEST(WaveformColumns, AreThoseOfAPlainWalk) {
  std::mt19937 random(2);
  for (int trial = 0; trial < 400; ++trial) {
    const size_t count = trial % 4 ? 1 + random() % 40 : 1 + random() % 9000;
    const std::vector<int16_t> samples = RandomSamples(random, count);
    const auto frames = static_cast<int32_t>(count);
    View view(samples);
    PlainColumns plain(samples, 20000);
    for (int run = 0; run < 12; ++run) {
      const int32_t zooms[] = {2,
                               frames - 1,
                               frames,
                               frames + 1,
                               4 * frames - 3,
                               4 * frames - 2,
                               static_cast<int32_t>(2 + random() % (3 * count)),
                               static_cast<int32_t>(2 + random() % (count + 1)),
                               INT32_MAX};
      const int32_t zoom = std::max(2, zooms[random() % std::size(zooms)]);
      const auto runLength = static_cast<int32_t>(1 + random() % 1200);
      const auto first =
          static_cast<int32_t>(random() % static_cast<uint32_t>(zoom)) - (run == 0 ? 100 : 0);
      plain.Make(zoom, first, runLength);
      ASSERT_EQ(view.At(zoom, first, runLength), plain.Run(0, runLength))
          << frames << " samples, zoom " << zoom << ", from " << first;
    }
  }
}

TEST(WaveformColumns, AreThoseOfAPlainWalkOverALongSound) {
  std::mt19937 random(3);
  const std::vector<int16_t> samples = RandomSamples(random, 700'001);
  View view(samples);
  PlainColumns plain(samples, 3000);
  for (const int32_t zoom : {2, 3, 100, 1000, 4999, 10'937, 65'536, 350'000, 699'999, 700'000}) {
    for (const int32_t first : {0, 1, zoom / 3, zoom - 3000, zoom - 1}) {
      plain.Make(zoom, first, 1500);
      ASSERT_EQ(view.At(zoom, first, 1500), plain.Run(0, 1500)) << zoom << " from " << first;
    }
  }
}

TEST(WaveformColumns, PrecomputedAreThoseOfOnePassOverTheWholeSound) {
  std::mt19937 random(4);
  for (int trial = 0; trial < 60; ++trial) {
    const size_t count = 3000 + random() % 9000;
    const std::vector<int16_t> samples = RandomSamples(random, count);
    const auto width = static_cast<int32_t>(1 + random() % 500);
    View view(samples, width);
    view.data.SetPrecomputed(1);
    const auto zoom = static_cast<int32_t>(2 + random() % (count - 2));
    view.data.SetZoom(zoom);
    PlainColumns plain(samples, count);
    plain.Make(zoom, 0, zoom);
    if (zoom < width) {
      EXPECT_EQ(view.data.GetColumns(0), nullptr);
      continue;
    }
    for (int scroll = 0; scroll < 20; ++scroll) {
      if (scroll == 12) {  // columns of another zoom take the place of the first ones
        plain.Make(2 * zoom, 17, width);
        ASSERT_EQ(view.At(2 * zoom, 17, width), plain.Run(0, width));
      }
      if (scroll == 16) {  // set again, they are right again
        view.data.SetZoom(zoom);
        plain.Make(zoom, 0, zoom);
      }
      const auto first =
          scroll % 4 ? static_cast<int32_t>(random() % static_cast<uint32_t>(zoom)) : 0;
      const int32_t held = std::min(first, zoom - width);
      ASSERT_EQ(view.Shown(first), plain.Run(held, width)) << zoom << " from " << first;
    }
  }
}

TEST(WaveformColumns, WithoutPrecomputingTheVisibleRunIsWorkedOut) {
  std::mt19937 random(5);
  const std::vector<int16_t> samples = RandomSamples(random, 1000);
  View view(samples, 100);
  view.data.SetZoom(333);
  PlainColumns plain(samples, 1000);
  for (const int32_t first : {0, 1, 50, 200, 233, 300}) {
    plain.Make(333, first, 100);
    EXPECT_EQ(view.Shown(first), plain.Run(0, 100)) << first;
  }
}

TEST(WaveformColumns, FollowTheSamplesWhenTold) {
  for (const int32_t precomputed : {0, 1}) {
    View view(std::vector<int16_t>(1000, 3), 50);
    view.data.SetPrecomputed(precomputed);
    EXPECT_EQ(view.Shown(0), Columns(50, {3, 3, 0}));
    std::vector<int16_t> louder(1000, 9);
    std::memcpy(view.sound->GetData(), louder.data(), 2000);
    EXPECT_EQ(view.data.SamplesChanged(), kWaveformDone);
    EXPECT_EQ(view.Shown(0), Columns(50, {9, 9, 0}));

    // A new and longer block in the same sound.
    louder.assign(4000, 11);
    view.sound->SetData(louder.data(), 8000);
    EXPECT_EQ(view.data.SamplesChanged(), kWaveformDone);
    EXPECT_EQ(view.data.GetFrameCount(), 4000);
    view.data.SetZoom(3000);
    EXPECT_EQ(view.Shown(2900), Columns(50, {11, 11, 0}));

    view.sound->SetFormat(8000, 0, 1, 16, 16, 1);
    EXPECT_EQ(view.data.SamplesChanged(), kWaveformBadArgument);
    EXPECT_EQ(view.data.GetColumns(0), nullptr);
  }
}

// --- Formats -----------------------------------------------------------------

TEST(WaveformFormats, OtherContainersAreConvertedToSixteenBits) {
  const uint8_t stored[] = {0x80, 0x00, 0xFF, 0x90};
  WavDataPtr sound = C_WavData::Create();
  sound->SetData(stored, sizeof stored);
  sound->SetFormat(8000, sizeof stored, 1, 8, 8, 0);
  C_VLRWaveformPresentationData data;
  ASSERT_EQ(data.Attach(sound.get()), kWaveformDone);
  ASSERT_EQ(data.GetFrameCount(), 4);
  const std::vector<int16_t> samples(data.GetSamples(), data.GetSamples() + 4);
  EXPECT_EQ(samples, (std::vector<int16_t>{0, -32768, 127 * 256, 16 * 256}));
}

TEST(WaveformFormats, SixteenBitContainersAreReadInPlaceAsTheyStand) {
  const WavDataPtr stereo = MakeSound({1, 2, 3, 4, 5, 6}, 2);
  C_VLRWaveformPresentationData data;
  ASSERT_EQ(data.Attach(stereo.get()), kWaveformDone);
  EXPECT_EQ(data.GetFrameCount(), 3);
  EXPECT_EQ(data.GetChannels(), 2);
  EXPECT_EQ(static_cast<const void*>(data.GetSamples()), stereo->GetData());

  const WavDataPtr twelveBits = MakeSound({2048, 4095});
  twelveBits->SetFormat(8000, 4, 1, 12, 16, 0);
  ASSERT_EQ(data.Attach(twelveBits.get()), kWaveformDone);
  EXPECT_EQ(data.GetSamples()[1], 4095);
}

TEST(WaveformFormats, ABlockAtAnOddAddressIsRead) {
  const std::vector<int16_t> samples = {300, -300, 5};
  std::vector<std::byte> block(7);
  std::memcpy(block.data() + 1, samples.data(), 6);
  WavDataPtr sound = C_WavData::Create();
  sound->SetFormat(8000, 6, 1, 16, 16, 1);
  sound->AttachData(block.data() + 1, 6);
  C_VLRWaveformPresentationData data;
  ASSERT_EQ(data.Attach(sound.get()), kWaveformDone);
  EXPECT_EQ(std::vector<int16_t>(data.GetSamples(), data.GetSamples() + 3), samples);
}

TEST(WaveformFormats, FramesThatAreNotThereDoNotCount) {
  const WavDataPtr sound = MakeSound({1, 2, 3});
  sound->SetFormat(8000, 1'000'000, 1, 16, 16, 1);
  C_VLRWaveformPresentationData data;
  ASSERT_EQ(data.Attach(sound.get()), kWaveformDone);
  EXPECT_EQ(data.GetFrameCount(), 3);
  const WaveformColumn* const columns = data.GetColumnsAt(3, 0, 3);
  EXPECT_EQ(columns[2], (WaveformColumn{3, 3, 0}));
}

TEST(WaveformFormats, SoundsWithoutSamplesAreRefused) {
  const WavDataPtr good = MakeSound({1, 2, 3});
  const WavDataPtr empty = C_WavData::Create();
  const WavDataPtr noData = C_WavData::Create();
  noData->SetFormat(8000, 100, 1, 16, 16, 1);
  const WavDataPtr threeBytes = MakeSound({1, 2, 3});
  threeBytes->SetFormat(8000, 6, 1, 24, 24, 1);
  const WavDataPtr noContainer = MakeSound({1, 2, 3});
  noContainer->SetFormat(8000, 6, 0, 0, 0, 1);
  I_WavData* const bad[] = {nullptr, empty.get(), noData.get(), threeBytes.get(),
                            noContainer.get()};
  for (I_WavData* const sound : bad) {
    C_VLRWaveformPresentationData data;
    ASSERT_EQ(data.Attach(good.get()), kWaveformDone);
    data.SetViewWidth(3);
    EXPECT_EQ(data.Attach(sound), kWaveformBadArgument);
    EXPECT_EQ(data.GetColumns(0), nullptr);
    EXPECT_EQ(data.GetColumnsAt(10, 0, 10), nullptr);
    EXPECT_EQ(data.GetSamples(), nullptr);
    EXPECT_EQ(data.GetFrameCount(), 0);
    EXPECT_EQ(data.GetChannels(), 0);
    EXPECT_EQ(data.GetColumnsPerSample(), 1.0);
    EXPECT_EQ(data.SetViewWidth(500), kWaveformNoSound);
    EXPECT_EQ(data.ZoomFit(), kWaveformNoSound);
    EXPECT_EQ(data.ZoomIn(), kWaveformNoSound);
    EXPECT_EQ(data.ZoomOut(), kWaveformNoSound);
    EXPECT_EQ(data.ZoomToRange(0, 1), kWaveformNoSound);
    EXPECT_EQ(data.GetViewWidth(), 3);
    EXPECT_EQ(data.GetZoomWidth(), 3);
  }
}

// --- Zoom --------------------------------------------------------------------

/// A view of `frames` silent samples at a zoom.
std::unique_ptr<View> ZoomedView(size_t frames, int32_t width, int32_t zoom, bool limit = true) {
  auto view = std::make_unique<View>(std::vector<int16_t>(frames), width);
  view->data.SetZoom(zoom);
  view->data.SetLimitZoom(limit);
  return view;
}

TEST(WaveformZoom, InAndOut) {
  const struct {
    const char* what;
    size_t frames;
    int32_t width, zoom;
    bool limit;
    int32_t in, out;
  } cases[] = {
      {"halved down to the view", 1000, 100, 100, true, 125, 100},
      {"a half that just fills the view is too little", 1000, 125, 125, true, 250, 125},
      {"doubled on from there", 1000, 100, 125, true, 250, 100},
      {"snaps to the samples", 1000, 100, 490, true, 1000, 245},
      {"0.95 itself does not snap", 1000, 100, 475, true, 950, 237},
      {"from a view of more than half the sound", 1000, 600, 600, true, 1000, 600},
      {"doubled up above a wide view", 10, 100, 100, true, 160, 100},
      {"out snaps to the samples", 1000, 100, 2050, true, 4100, 1000},
      {"out snaps below the view", 990, 1000, 1500, true, 3000, 990},
      {"ceiling of 128 columns each", 10, 4, 1000, true, 1280, 500},
      {"at the ceiling", 10, 4, 1280, true, 1280, 640},
      {"no ceiling", 10, 4, 1000, false, 2000, 500},
      {"held to 32 bits", 10, 4, INT32_MAX, false, INT32_MAX, INT32_MAX / 2},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const auto in = ZoomedView(test.frames, test.width, test.zoom, test.limit);
    EXPECT_EQ(in->data.ZoomIn(), kWaveformDone);
    EXPECT_EQ(in->data.GetZoomWidth(), test.in);
    const auto out = ZoomedView(test.frames, test.width, test.zoom, test.limit);
    EXPECT_EQ(out->data.ZoomOut(), kWaveformDone);
    EXPECT_EQ(out->data.GetZoomWidth(), test.out);
    EXPECT_EQ(out->data.ZoomFit(), kWaveformDone);
    EXPECT_EQ(out->data.GetZoomWidth(), test.width);
  }
}

TEST(WaveformZoom, ToARange) {
  const struct {
    const char* what;
    int32_t width, a, b;
    bool limit;
    int32_t status, zoom;
  } cases[] = {
      {"ten samples", 100, 0, 9, true, kWaveformDone, 10000},
      {"rounded", 100, 0, 2, true, kWaveformDone, 33333},
      {"end held to the sound", 100, 990, INT32_MAX, true, kWaveformDone, 10000},
      {"ceiling", 1000, 5, 6, true, kWaveformDone, 128000},
      {"no ceiling", 1000, 5, 6, false, kWaveformDone, 500000},
      {"begin behind the sound", 100, 1000, 1001, true, kWaveformBadArgument, 100},
      {"one sample", 100, 5, 5, true, kWaveformBadArgument, 100},
      {"falling", 100, 6, 5, true, kWaveformBadArgument, 100},
      {"negative", 100, -1, 5, true, kWaveformBadArgument, 100},
      {"all there is", 100, INT32_MIN, INT32_MAX, true, kWaveformBadArgument, 100},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const auto view = ZoomedView(1000, test.width, test.width, test.limit);
    EXPECT_EQ(view->data.ZoomToRange(test.a, test.b), test.status);
    EXPECT_EQ(view->data.GetZoomWidth(), test.zoom);
  }
  EXPECT_EQ(ZoomedView(1000, 100, 10000)->data.GetColumnsPerSample(), 10.0);
}

TEST(WaveformZoom, EveryViewAndZoomIsSafe) {
  Boxes boxes;
  const int32_t numbers[] = {INT32_MIN, -1000, -1, 0, 1, 2, 3, 7, 64, 600, INT32_MAX};
  for (const size_t frames : {1u, 2u, 7u, 130u}) {
    for (const int32_t width : numbers) {
      View view(std::vector<int16_t>(frames, 5));
      const int32_t status = view.data.SetViewWidth(width);
      EXPECT_EQ(status, width == INT32_MAX ? kWaveformNoMemory : kWaveformDone);
      EXPECT_EQ(view.data.GetViewWidth(), width);
      for (const int32_t precomputed : {0, 1}) {
        view.data.SetPrecomputed(precomputed);
        for (const int32_t zoom : numbers) {
          for (const int32_t first : numbers) {
            view.data.SetZoom(zoom);
            const WaveformColumn* const columns = view.data.GetColumns(first);
            const bool any = zoom >= 2 && zoom >= width && width < INT32_MAX;
            EXPECT_EQ(columns != nullptr, any) << zoom << ", view " << width;
            if (any && width > 0) {
              EXPECT_EQ(int32_t{columns[width - 1].High}, 5);
            }
            const int32_t count = std::min(first, 700);
            const WaveformColumn* const others = view.data.GetColumnsAt(zoom, first, count);
            EXPECT_EQ(others != nullptr, zoom >= 2);
          }
          view.data.SetZoom(zoom);
          view.data.ZoomIn();
          view.data.ZoomOut();
          view.data.ZoomFit();
          view.data.ZoomIn();
        }
      }
    }
  }
}

TEST(WaveformZoom, AFailedAllocationIsShown) {
  Boxes boxes;
  View view({1, 2, 3});
  EXPECT_EQ(view.data.SetViewWidth(500'000'000), kWaveformNoMemory);
  EXPECT_EQ(boxes.lastText.substr(0, boxes.lastText.find('\n')),
            "Because the 32-bit application limitation, allocate 2500000000 bytes memory fail.\r");
  EXPECT_GT(boxes.lastText.size(), boxes.lastText.find('\n') + 1);
  EXPECT_EQ(boxes.lastStyle, kBoxOk | kBoxStop);
  EXPECT_EQ(view.data.GetColumns(0), nullptr);

  // The view is usable again once it asks for less.
  EXPECT_EQ(view.data.SetViewWidth(3), kWaveformDone);
  EXPECT_EQ(view.Shown(0).size(), 3u);
}

}  // namespace
}  // namespace velora
