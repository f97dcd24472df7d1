// CRandom32: the 32-bit Mersenne Twister (MT19937) behind the formula
// function Random, and the one process-wide generator all expressions share.
#pragma once

#include <cstdint>

class CRandom32 {
 public:
  // Seeded with 0: every process draws the same sequence (intended, so that
  // formulas that draw numbers give reproducible runs).
  CRandom32();

  // The next tempered 32-bit output.
  uint32_t Next();

  // The generator shared by the whole process, made on first use.
  static CRandom32& Shared();

 private:
  static constexpr int kStateSize = 624;

  void Regenerate();

  uint32_t m_State[kStateSize];
  int m_Index = 0;
};
