// The object model: creation, reference counting, interface tables and smart pointers. (Query's fallbacks are
// tested through the input binding, their one user; the class's own table order through the real classes.)
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <random>
#include <thread>
#include <vector>

#include "runtime/object.h"
#include "runtime/resource_lock.h"
#include "test_support.h"

struct IProbe : IUnknown {
  virtual int32_t Alpha() = 0;
};
struct ISecond : IUnknown {
  virtual int32_t Gamma() = 0;
};
inline constexpr IID IID_IProbe = __IIDOfc("IProbe");
inline constexpr IID IID_ISecond = __IIDOfc("ISecond");
DECLARE_INTERFACE_ID(IProbe)
DECLARE_INTERFACE_ID(ISecond)

namespace {

using test_support::RefCountOf;

// Counts live objects and calls of the lifecycle hooks.
struct Census {
  std::atomic<int> live{0}, finalReleases{0};
  HRESULT constructResult = S_OK;
} gCensus;

class CProbe : public CObjectImpl<CProbe, IProbe, ISecond> {
 public:
  static constexpr wchar_t kObjectName[] = L"Probe";
  static constexpr InterfaceEntry<CProbe> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CProbe, IObjectInfo>}, {&IID_IProbe, InterfaceOf<CProbe, IProbe>},
      {&IID_ISecond, InterfaceOf<CProbe, ISecond>},
  };
  CProbe() { ++gCensus.live; }
  ~CProbe() { --gCensus.live; }

  HRESULT FinalConstruct() override { return gCensus.constructResult; }
  void FinalRelease() override { ++gCensus.finalReleases; }
  int32_t Alpha() override { return 1; }
  int32_t Gamma() override { return 3; }
};

class ObjectModel : public ::testing::Test {
 protected:
  void SetUp() override { Reset(); }
  static void Reset(HRESULT construct = S_OK) {
    gCensus.live = 0;
    gCensus.finalReleases = 0;
    gCensus.constructResult = construct;
  }
  void TearDown() override { EXPECT_EQ(gCensus.live, 0) << "an object leaked"; }
};

// A creation hands out one reference, or destroys the half-made object (FinalRelease included).
TEST_F(ObjectModel, CreationAnswersOrLeavesNothing) {
  struct Case { const char* what; HRESULT construct; const IID* iid; bool withOut; HRESULT expected; int released; };
  const Case cases[] = {
      {"answered", S_OK, &IID_IProbe, true, S_OK, 1},
      {"FinalConstruct fails", E_OUTOFMEMORY, &IID_IProbe, true, E_OUTOFMEMORY, 1},
      {"identity not answered", S_OK, &IID_IVariant, true, E_NOINTERFACE, 1},
      {"no identity", S_OK, nullptr, true, E_NOINTERFACE, 1},
      {"no out pointer", S_OK, &IID_IProbe, false, E_POINTER, 0},
  };
  for (const Case& c : cases) {
    Reset(c.construct);
    IID iid = c.iid ? *c.iid : IID_NULL;
    void* out = reinterpret_cast<void*>(0x1);
    EXPECT_EQ(CObject<CProbe>::_CreateInstance(nullptr, c.iid ? &iid : nullptr, c.withOut ? &out : nullptr), c.expected)
        << c.what;
    if (c.expected == S_OK) {
      auto* probe = static_cast<IProbe*>(out);
      EXPECT_EQ(probe->AddRef(), 2u);
      EXPECT_EQ(probe->Release(), 1u);
      EXPECT_EQ(gCensus.finalReleases, 0);
      EXPECT_EQ(probe->Release(), 0u);
    } else if (c.withOut) {
      EXPECT_EQ(out, nullptr) << c.what;
    }
    EXPECT_EQ(gCensus.live, 0) << c.what;
    EXPECT_EQ(gCensus.finalReleases, c.released) << c.what;
  }
}

// An answer carries a reference of its own, a refusal leaves null; smart pointers compare identities, cast.
TEST_F(ObjectModel, InterfacesReachTheOneObject) {
  SmartPtr<IProbe> probe = CreateInstanceOf<CProbe, IProbe>();
  ASSERT_TRUE(probe);
  for (const IID* iid : {&IID_IUnknown, &IID_IObjectInfo, &IID_IProbe, &IID_ISecond, &IID_NULL, &IID_IVariant}) {
    const bool answered = iid != &IID_NULL && iid != &IID_IVariant;
    void* out = reinterpret_cast<void*>(0x1);
    EXPECT_EQ(probe->QueryInterface(*iid, &out), answered ? S_OK : E_NOINTERFACE);
    SmartPtr<IUnknown> answer = SmartPtr<IUnknown>::Adopt(answered ? static_cast<IUnknown*>(out) : nullptr);
    EXPECT_EQ(answer ? RefCountOf(answer.get()) : reinterpret_cast<uintptr_t>(out), answered ? 2u : 0u);
  }
  EXPECT_EQ(probe->QueryInterface(IID_IProbe, nullptr), E_POINTER);

  SmartPtr<ISecond> second = QueryAs<ISecond>(probe.get());
  EXPECT_TRUE(probe == second.get()) << "identity comparison through IUnknown";
  EXPECT_NE(static_cast<void*>(probe.get()), static_cast<void*>(second.get()));
  SmartPtr<IUnknown> other = CreateInstanceOf<CProbe, IUnknown>();
  EXPECT_FALSE(other == probe.get() || other == nullptr);
  SmartPtrIID<ISecond, &IID_ISecond> cast;
  EXPECT_EQ(cast.Cast(other.get()), S_OK);
  EXPECT_EQ(cast->Gamma(), 3);
  EXPECT_EQ(cast.Cast(nullptr), E_FAIL);
  EXPECT_FALSE(cast) << "a failed cast leaves null";

  tagREFString name{};
  ASSERT_EQ(QueryAs<IObjectInfo>(probe.get())->GetName(99, &name), S_OK);  // any index: the class name
  EXPECT_EQ(std::wstring(name.text, static_cast<size_t>(name.length)), L"Probe");
}

// Objects shared by several threads that each drop their references in their own random order: the last Release
// lands on any thread, each object is destroyed exactly once, and no Release reads an object another thread has
// just destroyed (the sanitizer builds catch that).
TEST_F(ObjectModel, LastReleaseOnAnyThreadDestroysOnce) {
  constexpr int kObjects = 2000;
  constexpr int kThreads = 4;
  std::vector<IProbe*> shared;
  for (int i = 0; i < kObjects; ++i) {
    IProbe* probe = CreateInstanceOf<CProbe, IProbe>().Detach();
    for (int t = 0; t < kThreads; ++t) EXPECT_EQ(probe->AddRef(), static_cast<uint32_t>(t + 2));
    shared.push_back(probe);
  }
  for (IProbe* probe : shared) EXPECT_EQ(probe->Release(), static_cast<uint32_t>(kThreads));
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&shared, t] {
      std::vector<IProbe*> mine = shared;
      std::shuffle(mine.begin(), mine.end(), std::mt19937(static_cast<uint32_t>(t)));
      for (IProbe* probe : mine) {
        probe->AddRef();
        probe->Release();
        probe->Release();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(gCensus.live, 0);
  EXPECT_EQ(gCensus.finalReleases, kObjects);
}

// The same thread may take the lock again; each Lock needs its Unlock.
TEST(ResourceLock, IsRecursive) {
  CResourceLock lock;
  ASSERT_EQ(lock.Lock(), 0);
  ASSERT_EQ(lock.Lock(), 0) << "the same thread takes it again";
  EXPECT_EQ(lock.Unlock(), 0);
  EXPECT_EQ(lock.Unlock(), 0) << "still held after one unlock of two";
#ifndef __SANITIZE_THREAD__  // the thread sanitizer stops at the misuse itself
  EXPECT_EQ(lock.Unlock(), EPERM) << "unlocking a lock this thread does not hold is refused";
#endif
}

}  // namespace
