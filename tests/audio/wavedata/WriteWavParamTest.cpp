#include "audio/wavedata/WriteWavParam.h"

#include <gtest/gtest.h>

#include "audio/wavedata/WavData.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora {
namespace {

void SetAll(C_WriteWavParam& param, I_VeloraPinMapInfoMgr* pins) {
  param.SetTargetFormat(12, 16, 1);
  param.SetCodecParam(1);
  param.SetSilenceParams(2, 3);
  param.SetValue1(4);
  param.SetLscEnabled(5);
  param.SetLscTable(6);
  param.SetValue4(7);
  param.SetLveMode(8);
  param.SetLvePercent1(9);
  param.SetLvePercent2(10);
  param.SetLvePercent3(11);
  param.SetLscIndex(12);
  param.SetPinMapMgr(pins);
}

/// All fields as numbers, for comparing.
std::vector<uint64_t> Fields(const C_WriteWavParam& param) {
  uint16_t resolution = 0, container = 0;
  uint32_t isSigned = 0, minLength = 0, threshold = 0;
  param.GetTargetFormat(&resolution, &container, &isSigned);
  param.GetSilenceParams(&minLength, &threshold);
  return {static_cast<uint64_t>(param.HasTargetFormat()),
          resolution,
          container,
          isSigned,
          param.GetCodecParam(),
          static_cast<uint64_t>(param.HasSilenceParams()),
          minLength,
          threshold,
          param.GetValue1(),
          param.GetLscEnabled(),
          param.GetLscTable(),
          param.GetValue4(),
          param.GetLveMode(),
          param.GetLvePercent1(),
          param.GetLvePercent2(),
          param.GetLvePercent3(),
          param.GetLscIndex(),
          param.GetPinMapMgr() != nullptr};
}

const std::vector<uint64_t> kDefaults{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 100, 100, 0, 0};

TEST(WriteWavParam, ResetAndCopy) {
  C_VeloraPinMapInfoMgr pins;
  C_WavData source;
  EXPECT_EQ(Fields(source.WriteParam()), kDefaults);
  SetAll(*source.GetWriteParam(), &pins);
  const std::vector<uint64_t> set{1, 12, 16, 1, 1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 1};
  EXPECT_EQ(Fields(source.WriteParam()), set);
  C_WavData target;
  target.CopyWriteParam(&source);
  target.CopyWriteParam(nullptr);
  EXPECT_EQ(Fields(target.WriteParam()), set);
  EXPECT_EQ(target.WriteParam().GetPinMapMgr(), &pins);
  target.CopyWriteParam(&target);
  EXPECT_EQ(Fields(target.WriteParam()), set);
  target.GetWriteParam()->Reset();
  EXPECT_EQ(Fields(target.WriteParam()), kDefaults);
  target.WriteParam().GetTargetFormat(nullptr, nullptr, nullptr);
  target.WriteParam().GetSilenceParams(nullptr, nullptr);
}

TEST(WriteWavParam, TheConvertMethodIsThePinMaps) {
  C_VeloraPinMapInfoMgr pins;
  C_WriteWavParam param;
  EXPECT_EQ(param.GetConvertMethod(), 1);
  pins.SetConvertMethod(3);
  param.SetPinMapMgr(&pins);
  EXPECT_EQ(param.GetConvertMethod(), 3);
}

}  // namespace
}  // namespace velora
