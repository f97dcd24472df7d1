// The object model: creation, reference counting, interface tables, the
// class's own table order, smart pointers and Query's fallbacks.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <random>
#include <thread>
#include <vector>

#include "runtime/object.h"
#include "runtime/query.h"
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

// How a host sees the primary table of CProbe (declared outside the anonymous
// namespace so the compiler cannot assume it has no implementations).
struct CProbePrimaryTable : IUnknown {
  virtual HRESULT FinalConstruct() = 0;
  virtual void FinalRelease() = 0;
  virtual void Lock() = 0;
  virtual void Unlock() = 0;
  virtual int32_t Gamma() = 0;
  virtual int32_t Alpha() = 0;
};

// Calls Gamma and Alpha through the primary table as a host does, by casting
// to a table type the object was not declared with; exempt from the dynamic
// type check, which would rightly see the cast as a different type.
__attribute__((no_sanitize("vptr"))) int32_t CallThroughPrimaryTable(IUnknown* unknown) {
  auto* table = reinterpret_cast<CProbePrimaryTable*>(unknown);
  return table->Gamma() * 10 + table->Alpha();
}

namespace {

using test_support::RefCountOf;

// Counts live objects and calls of the lifecycle hooks.
struct Census {
  std::atomic<int> live{0};
  std::atomic<int> finalReleases{0};
  HRESULT constructResult = S_OK;

  void Reset(HRESULT construct = S_OK) {
    live = 0;
    finalReleases = 0;
    constructResult = construct;
  }
};
Census gCensus;

class CProbe : public CObjectImpl<CProbe, IProbe, ISecond> {
 public:
  static constexpr wchar_t kObjectName[] = L"Probe";
  static constexpr InterfaceEntry<CProbe> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CProbe, IObjectInfo>},
      {&IID_IProbe, InterfaceOf<CProbe, IProbe>},
      {&IID_ISecond, InterfaceOf<CProbe, ISecond>},
  };
  CProbe() { ++gCensus.live; }
  ~CProbe() { --gCensus.live; }

  HRESULT FinalConstruct() override { return gCensus.constructResult; }
  void FinalRelease() override { ++gCensus.finalReleases; }
  // Declared in the class's own slot order: Gamma (of the second interface) before Alpha.
  int32_t Gamma() override { return 3; }
  int32_t Alpha() override { return 1; }
};

class ObjectModel : public ::testing::Test {
 protected:
  void SetUp() override { gCensus.Reset(); }
  void TearDown() override { EXPECT_EQ(gCensus.live, 0) << "an object leaked"; }
};

// A creation hands out one reference, or destroys the half-made object (FinalRelease included).
TEST_F(ObjectModel, CreationAnswersOrLeavesNothing) {
  struct Case {
    const char* what;
    HRESULT construct;
    const IID* iid;
    bool withOut;
    HRESULT expected;
    int finalReleases;
  };
  const Case cases[] = {
      {"answered", S_OK, &IID_IProbe, true, S_OK, 1},
      {"FinalConstruct fails", E_OUTOFMEMORY, &IID_IProbe, true, E_OUTOFMEMORY, 1},
      {"identity not answered", S_OK, &IID_IVariant, true, E_NOINTERFACE, 1},
      {"no identity", S_OK, nullptr, true, E_NOINTERFACE, 1},
      {"no out pointer", S_OK, &IID_IProbe, false, E_POINTER, 0},
  };
  for (const Case& c : cases) {
    gCensus.Reset(c.construct);
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
    EXPECT_EQ(gCensus.finalReleases, c.finalReleases) << c.what;
  }
}

TEST_F(ObjectModel, InterfacesReachTheOneObject) {
  SmartPtr<IProbe> probe = CreateInstanceOf<CProbe, IProbe>();
  ASSERT_TRUE(probe);
  struct Case {
    const IID* iid;
    HRESULT expected;
  } cases[] = {
      {&IID_IUnknown, S_OK}, {&IID_IObjectInfo, S_OK}, {&IID_IProbe, S_OK}, {&IID_ISecond, S_OK},
      {&IID_NULL, E_NOINTERFACE}, {&IID_IVariant, E_NOINTERFACE}, {&IID_IString, E_NOINTERFACE},
  };
  // An answer carries a reference of its own; a refusal leaves null.
  for (const Case& c : cases) {
    void* out = reinterpret_cast<void*>(0x1);
    EXPECT_EQ(probe->QueryInterface(*c.iid, &out), c.expected);
    SmartPtr<IUnknown> answer = SmartPtr<IUnknown>::Adopt(c.expected == S_OK ? static_cast<IUnknown*>(out) : nullptr);
    EXPECT_EQ(answer ? RefCountOf(answer.get()) : reinterpret_cast<uintptr_t>(out), c.expected == S_OK ? 2u : 0u);
  }
  EXPECT_EQ(probe->QueryInterface(IID_IProbe, nullptr), E_POINTER);

  SmartPtr<ISecond> second = QueryAs<ISecond>(probe.get());
  ASSERT_TRUE(second);
  EXPECT_EQ(second->Gamma(), 3);
  EXPECT_TRUE(probe == second.get()) << "identity comparison through IUnknown";
  EXPECT_NE(static_cast<void*>(probe.get()), static_cast<void*>(second.get()));

  EXPECT_EQ(CallThroughPrimaryTable(QueryAs<IUnknown>(probe.get()).get()), 31) << "the class's own slot order";

  SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(probe.get());
  tagREFString first{}, again{};
  ASSERT_EQ(info->GetName(0, &first), S_OK);
  ASSERT_EQ(info->GetName(99, &again), S_OK);
  EXPECT_EQ(std::wstring(first.text, static_cast<size_t>(first.length)), L"Probe");
  EXPECT_EQ(first.text, again.text) << "no copy: the static text itself";
  EXPECT_EQ(info->GetName(0, nullptr), E_POINTER);
}

// Objects shared by several threads that each drop their references in their
// own random order: the last Release lands on any thread, each object is
// destroyed exactly once, and no Release reads an object another thread has
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

TEST_F(ObjectModel, SmartPointersCompareIdentitiesAndCast) {
  SmartPtr<IUnknown> none, one = CreateInstanceOf<CProbe, IUnknown>(), other = CreateInstanceOf<CProbe, IUnknown>();
  EXPECT_TRUE(none == nullptr);
  EXPECT_FALSE(none == one.get());
  EXPECT_FALSE(one == nullptr);
  EXPECT_FALSE(one == other.get());

  SmartPtrIID<ISecond, &IID_ISecond> second;
  EXPECT_EQ(second.Cast(one.get()), S_OK);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->Gamma(), 3);
  EXPECT_EQ(second.Cast(nullptr), E_FAIL);
  EXPECT_FALSE(second) << "a failed cast leaves null";
  SmartPtrIID<IVariant, &IID_IVariant> variant;
  EXPECT_EQ(variant.Cast(one.get()), E_NOINTERFACE);
  EXPECT_FALSE(variant);
}

// A container that answers the identities it is asked for through its moniker.
class CContainerMoniker : public CObjectImpl<CContainerMoniker, ICollectionMoniker> {
 public:
  static constexpr wchar_t kObjectName[] = L"ContainerMoniker";
  static constexpr InterfaceEntry<CContainerMoniker> kInterfaces[] = {
      {&IID_ICollectionMoniker, InterfaceOf<CContainerMoniker, ICollectionMoniker>},
  };
  HRESULT Reserved1() override { return E_NOTIMPL; }
  HRESULT FindObject(IID* iid, void** object) override {
    return target ? target->QueryInterface(*iid, object) : E_NOINTERFACE;
  }
  SmartPtr<IUnknown> target;
};

class CHost : public CObjectImpl<CHost, IHostWindow> {
 public:
  static constexpr wchar_t kObjectName[] = L"Host";
  static constexpr InterfaceEntry<CHost> kInterfaces[] = {{&IID_IHostWindow, InterfaceOf<CHost, IHostWindow>}};
  HRESULT Reserved1() override { return E_NOTIMPL; }
  HRESULT Reserved2() override { return E_NOTIMPL; }
  HRESULT GetHostedObject(IUnknown** object) override { return hosted ? hosted.CopyTo(object) : E_FAIL; }
  SmartPtr<IUnknown> hosted;
};

TEST_F(ObjectModel, QueryTriesTheObjectThenItsContainerThenItsHost) {
  SmartPtr<IUnknown> probe = CreateInstanceOf<CProbe, IUnknown>();
  SmartPtr<ISecond> out;
  EXPECT_EQ(Query(nullptr, IID_ISecond, out.ReceiveVoid()), E_NOINTERFACE);
  EXPECT_EQ(Query(probe.get(), IID_ISecond, out.ReceiveVoid()), S_OK);
  EXPECT_TRUE(out);

  SmartPtr<CContainerMoniker> moniker = NewObject<CContainerMoniker>();
  EXPECT_EQ(Query(moniker->GetUnknown(), IID_ISecond, out.ReceiveVoid()), E_NOINTERFACE);
  moniker->target = probe;
  EXPECT_EQ(Query(moniker->GetUnknown(), IID_ISecond, out.ReceiveVoid()), S_OK) << "found in the container";
  EXPECT_TRUE(out == probe.get());

  SmartPtr<CHost> host = NewObject<CHost>();
  host->hosted = probe;
  EXPECT_EQ(Query(host->GetUnknown(), IID_ISecond, out.ReceiveVoid()), S_OK) << "found through the host";
  EXPECT_TRUE(out == probe.get());

  // A moniker whose container is a host window: the host is found through the moniker.
  moniker->target = SmartPtr<IUnknown>(host->GetUnknown());
  EXPECT_EQ(Query(moniker->GetUnknown(), IID_IProbe, out.ReceiveVoid()), S_OK);
  host->hosted.Reset();
  EXPECT_EQ(Query(moniker->GetUnknown(), IID_IProbe, out.ReceiveVoid()), E_NOINTERFACE);
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
