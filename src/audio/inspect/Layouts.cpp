#include "audio/inspect/Layouts.h"

namespace velora::layout {

namespace {

constexpr auto kTag = FieldForm::kTag;
constexpr auto kDecimal = FieldForm::kDecimal;
constexpr auto kHex = FieldForm::kHex;
constexpr auto kBytes = FieldForm::kBytes;

#define FIELD(record, member, name, value, checkedBy, form) \
  { offsetof(record, member), sizeof(record::member), name, value, checkedBy, form }

constexpr LayoutField kRiffHead[] = {
    FIELD(RiffHeadRecord, tag, "tag", "\"RIFF\"", "constant", kTag),
    FIELD(RiffHeadRecord, size, "form size", "bytes behind this field", "file size", kDecimal),
    FIELD(RiffHeadRecord, form, "form", "\"WAVE\"", "constant", kTag),
};

constexpr LayoutField kChunkHead[] = {
    FIELD(ChunkHeadRecord, tag, "tag", "four printable characters", "constant for known chunks",
          kTag),
    FIELD(ChunkHeadRecord, size, "size", "bytes behind this field", "place of the next chunk",
          kDecimal),
};

constexpr LayoutField kFmt[] = {
    FIELD(FmtRecord, formatTag, "format tag", "1 PCM, 2 Microsoft ADPCM, 17 IMA ADPCM",
          "known values", kDecimal),
    FIELD(FmtRecord, channels, "channels", "1 or more", "block align", kDecimal),
    FIELD(FmtRecord, rate, "sample rate", "hertz", "byte rate", kDecimal),
    FIELD(FmtRecord, byteRate, "byte rate",
          "rate x block align; ADPCM: that by the samples of a block", "rate and block align",
          kDecimal),
    FIELD(FmtRecord, blockAlign, "block align",
          "channels x bytes of a sample; ADPCM: bytes of a block",
          "channels and bits; ADPCM: samples of a block", kDecimal),
    FIELD(FmtRecord, bits, "bits", "1 to 16; 4 for ADPCM", "block align", kDecimal),
};

constexpr LayoutField kCueHead[] = {
    FIELD(CueHeadRecord, count, "count", "cue points that follow", "chunk size", kDecimal),
};

constexpr LayoutField kCuePoint[] = {
    FIELD(CuePointRecord, id, "id", "number of the cue point", "unique; labels refer to it",
          kDecimal),
    FIELD(CuePointRecord, position, "position", "sample", "frames; sample offset", kDecimal),
    FIELD(CuePointRecord, chunk, "chunk", "\"data\"", "a chunk of the file", kTag),
    FIELD(CuePointRecord, chunkStart, "chunk start", "0", "constant", kDecimal),
    FIELD(CuePointRecord, blockStart, "block start", "0", "constant", kDecimal),
    FIELD(CuePointRecord, sampleOffset, "sample offset", "the position again", "position",
          kDecimal),
};

constexpr LayoutField kSamplerHead[] = {
    FIELD(SamplerHeadRecord, manufacturer, "manufacturer", "any", "nothing", kHex),
    FIELD(SamplerHeadRecord, product, "product", "any", "nothing", kHex),
    FIELD(SamplerHeadRecord, samplePeriod, "sample period", "nanoseconds", "nothing", kDecimal),
    FIELD(SamplerHeadRecord, midiUnityNote, "MIDI unity note", "0 to 127", "nothing", kDecimal),
    FIELD(SamplerHeadRecord, midiPitchFraction, "MIDI pitch fraction", "any", "nothing", kDecimal),
    FIELD(SamplerHeadRecord, smpteFormat, "SMPTE format", "0, 24, 25, 29, 30", "nothing", kDecimal),
    FIELD(SamplerHeadRecord, smpteOffset, "SMPTE offset", "any", "nothing", kHex),
    FIELD(SamplerHeadRecord, loopCount, "loop count", "loops that follow", "chunk size", kDecimal),
    FIELD(SamplerHeadRecord, samplerDataSize, "sampler data size", "bytes behind the loops",
          "chunk size", kDecimal),
};

constexpr LayoutField kLoop[] = {
    FIELD(LoopRecord, id, "id", "cue id or any number", "nothing", kDecimal),
    FIELD(LoopRecord, type, "type", "0 forward, 1 alternating, 2 backward", "nothing", kDecimal),
    FIELD(LoopRecord, start, "start", "sample", "end", kDecimal),
    FIELD(LoopRecord, end, "end", "sample, included", "frames", kDecimal),
    FIELD(LoopRecord, fraction, "fraction", "any", "nothing", kDecimal),
    FIELD(LoopRecord, playCount, "play count", "0 for ever", "nothing", kDecimal),
};

constexpr LayoutField kLabel[] = {
    FIELD(LabelHeadRecord, id, "cue id", "of the cue point it names", "cue points", kDecimal),
};

constexpr LayoutField kText[] = {
    FIELD(TextRecord, id, "cue id", "of the cue point where it starts", "cue points", kDecimal),
    FIELD(TextRecord, length, "length", "samples", "frames", kDecimal),
    FIELD(TextRecord, zero, "reserved", "0", "nothing", kBytes),
};

constexpr LayoutField kSource[] = {
    FIELD(SourceHeader, tag, "tag", "\"KPCM\"", "constant", kTag),
    FIELD(SourceHeader, version, "version", "1", "constant", kHex),
    FIELD(SourceHeader, headerSize, "header size", "22", "constant", kDecimal),
    FIELD(SourceHeader, channels, "channels", "1 or 2", "count", kDecimal),
    FIELD(SourceHeader, bits, "bits", "12", "constant", kDecimal),
    FIELD(SourceHeader, flag, "flag", "4 plain, 132 enciphered", "known values; range of the words",
          kDecimal),
    FIELD(SourceHeader, reserved, "reserved", "0", "constant", kDecimal),
    FIELD(SourceHeader, rate, "sample rate", "hertz", "band limit", kDecimal),
    FIELD(SourceHeader, bandLimit, "band limit", "(rate / 2) x 0.85", "rate", kDecimal),
    FIELD(SourceHeader, count, "count", "16-bit words that follow", "file size", kDecimal),
};

constexpr LayoutField kMpmHeader[] = {
    FIELD(MpmHeader, tag, "tag", "\"KMPM\"", "constant", kTag),
    FIELD(MpmHeader, version, "version", "0x0110", "constant", kHex),
    FIELD(MpmHeader, headerSize, "header size", "62", "constant", kDecimal),
    FIELD(MpmHeader, channels, "channels", "1", "constant", kDecimal),
    FIELD(MpmHeader, formatCode, "format code", "5", "constant", kDecimal),
    FIELD(MpmHeader, rate, "sample rate", "hertz", "band limit", kDecimal),
    FIELD(MpmHeader, bandLimit, "band limit", "(rate / 2) x 0.85", "rate", kDecimal),
    FIELD(MpmHeader, fileSize, "file size", "all bytes", "file size; end of the last block",
          kDecimal),
    FIELD(MpmHeader, eventOffset, "event block offset", "of \"MCMD\"", "end of the source samples",
          kDecimal),
    FIELD(MpmHeader, eventSize, "event block size", "14 + 6 x events", "event block: count",
          kDecimal),
    FIELD(MpmHeader, streamBlockOffset, "stream block offset", "62", "constant", kDecimal),
    FIELD(MpmHeader, streamBlockSize, "stream block size", "14 + stream size",
          "stream block: stream size; decoded offset", kDecimal),
    FIELD(MpmHeader, streamBits, "stream bits", "12", "constant", kDecimal),
    FIELD(MpmHeader, sourceOffset, "samples offset", "of the source samples",
          "end of the decoded block", kDecimal),
    FIELD(MpmHeader, sourceCount, "sample count", "words at that offset", "event block offset",
          kDecimal),
    FIELD(MpmHeader, sourceBits, "sample bits", "12", "constant", kDecimal),
    FIELD(MpmHeader, decodedOffset, "decoded offset", "of the decoded block", "end of the stream",
          kDecimal),
    FIELD(MpmHeader, decodedCount, "decoded count", "words at that offset",
          "samples offset; samples that the stream tells", kDecimal),
    FIELD(MpmHeader, silenceThreshold, "silence threshold", "of the detection, 0 when not set",
          "nothing", kDecimal),
    FIELD(MpmHeader, silenceLength, "silence length", "minimum x rate / 1000, 0 when not set",
          "nothing", kDecimal),
    FIELD(MpmHeader, method, "compression method", "4 frames, 5 raw samples",
          "commands of the stream", kDecimal),
};

constexpr LayoutField kStreamBlock[] = {
    FIELD(StreamBlockRecord, tag, "tag", "\"MFRM\"", "constant", kTag),
    FIELD(StreamBlockRecord, size, "block size", "14", "constant", kDecimal),
    FIELD(StreamBlockRecord, streamOffset, "stream offset", "76", "end of this block", kDecimal),
    FIELD(StreamBlockRecord, streamSize, "stream size", "bytes, end mark included",
          "end mark; header: stream block size", kDecimal),
};

constexpr LayoutField kEventBlock[] = {
    FIELD(EventBlockRecord, tag, "tag", "\"MCMD\"", "constant", kTag),
    FIELD(EventBlockRecord, size, "block size", "14", "constant", kDecimal),
    FIELD(EventBlockRecord, firstOffset, "records offset", "of the first event record",
          "end of this block", kDecimal),
    FIELD(EventBlockRecord, count, "count", "event records", "header: event block size", kDecimal),
};

constexpr LayoutField kEvent[] = {
    FIELD(EventRecord, position, "position", "sample", "place of the event in the stream",
          kDecimal),
    FIELD(EventRecord, action, "action", "0 to 255", "event word in the stream", kDecimal),
    FIELD(EventRecord, parameter, "parameter", "0 to 255", "event word in the stream", kDecimal),
};

constexpr LayoutField kSilenceBlock[] = {
    FIELD(SilenceBlockRecord, tag, "tag", "\"KSIL\"", "constant", kTag),
    FIELD(SilenceBlockRecord, size, "block size", "16", "constant", kDecimal),
    FIELD(SilenceBlockRecord, recordSize, "record size", "8", "constant", kDecimal),
    FIELD(SilenceBlockRecord, firstOffset, "records offset", "of the first silence record",
          "end of this block", kDecimal),
    FIELD(SilenceBlockRecord, count, "count", "silence records", "file size", kDecimal),
};

constexpr LayoutField kSilence[] = {
    FIELD(SilenceRecord, start, "start", "sample", "silence commands of the stream", kDecimal),
    FIELD(SilenceRecord, end, "end", "sample, included", "silence commands of the stream",
          kDecimal),
};

#undef FIELD

}  // namespace

constexpr Layout kRiffHeadLayout{"File head", sizeof(RiffHeadRecord), kRiffHead};
constexpr Layout kChunkHeadLayout{"Chunk head", sizeof(ChunkHeadRecord), kChunkHead};
constexpr Layout kFmtLayout{"Chunk \"fmt \"", sizeof(FmtRecord), kFmt};
constexpr Layout kCueHeadLayout{"Chunk \"cue \"", sizeof(CueHeadRecord), kCueHead};
constexpr Layout kCuePointLayout{"Cue point", sizeof(CuePointRecord), kCuePoint};
constexpr Layout kSamplerHeadLayout{"Chunk \"smpl\"", sizeof(SamplerHeadRecord), kSamplerHead};
constexpr Layout kLoopLayout{"Sample loop", sizeof(LoopRecord), kLoop};
constexpr Layout kLabelLayout{"Record \"labl\"", sizeof(LabelHeadRecord), kLabel};
constexpr Layout kTextLayout{"Record \"ltxt\"", sizeof(TextRecord), kText};
constexpr Layout kSourceLayout{"Header", sizeof(SourceHeader), kSource};
constexpr Layout kMpmHeaderLayout{"Header", sizeof(MpmHeader), kMpmHeader};
constexpr Layout kStreamBlockLayout{"Block \"MFRM\"", sizeof(StreamBlockRecord), kStreamBlock};
constexpr Layout kEventBlockLayout{"Block \"MCMD\"", sizeof(EventBlockRecord), kEventBlock};
constexpr Layout kEventRecordLayout{"Event record", sizeof(EventRecord), kEvent};
constexpr Layout kSilenceBlockLayout{"Block \"KSIL\"", sizeof(SilenceBlockRecord), kSilenceBlock};
constexpr Layout kSilenceRecordLayout{"Silence record", sizeof(SilenceRecord), kSilence};

namespace {

constexpr Layout kWave[] = {kRiffHeadLayout, kChunkHeadLayout, kFmtLayout,
                            kCueHeadLayout,  kCuePointLayout,  kSamplerHeadLayout,
                            kLoopLayout,     kLabelLayout,     kTextLayout};
constexpr Layout kSourceFile[] = {kSourceLayout};
constexpr Layout kMpm[] = {kMpmHeaderLayout,   kStreamBlockLayout,  kEventBlockLayout,
                           kEventRecordLayout, kSilenceBlockLayout, kSilenceRecordLayout};

}  // namespace

std::span<const Layout> WaveLayouts() { return kWave; }
std::span<const Layout> SourceLayouts() { return kSourceFile; }
std::span<const Layout> MpmLayouts() { return kMpm; }

}  // namespace velora::layout
