// The 32-bit Mersenne Twister (MT19937) with its fixed seed.
#include "expression/random32.h"

namespace {

constexpr int kShift = 397;
constexpr uint32_t kMatrix = 0x9908B0DFu;
constexpr uint32_t kUpperBit = 0x80000000u;
constexpr uint32_t kLowerBits = 0x7FFFFFFFu;
constexpr uint32_t kSeedMultiplier = 1812433253u;

}  // namespace

CRandom32::CRandom32() {
  m_State[0] = 0;
  for (int i = 1; i < kStateSize; ++i)
    m_State[i] = kSeedMultiplier * (m_State[i - 1] ^ (m_State[i - 1] >> 30)) + static_cast<uint32_t>(i);
}

void CRandom32::Regenerate() {
  for (int i = 0; i < kStateSize; ++i) {
    const uint32_t next = m_State[(i + 1) % kStateSize];
    const uint32_t y = (m_State[i] & kUpperBit) | (next & kLowerBits);
    m_State[i] = m_State[(i + kShift) % kStateSize] ^ (y >> 1) ^ ((next & 1u) ? kMatrix : 0u);
  }
}

uint32_t CRandom32::Next() {
  if (m_Index == 0) Regenerate();
  uint32_t y = m_State[m_Index];
  m_Index = (m_Index + 1) % kStateSize;
  y ^= y >> 11;
  y ^= (y << 7) & 0x9D2C5680u;
  y ^= (y << 15) & 0xEFC60000u;
  y ^= y >> 18;
  return y;
}

CRandom32& CRandom32::Shared() {
  static CRandom32 generator;  // made once, thread-safely, on the first Random
  return generator;
}
