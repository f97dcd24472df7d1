// The object model: creation, reference counting, interface tables, the
// class's own table order, smart pointers and Query's fallbacks.
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>
#include <vector>

#include "runtime/object.h"
#include "runtime/query.h"
#include "runtime/resource_lock.h"
#include "test_support.h"

struct IProbe : IUnknown {
  virtual int32_t Alpha() = 0;
  virtual int32_t Beta() = 0;
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
  virtual int32_t Beta() = 0;
};

namespace {

// Counts live objects and calls of the lifecycle hooks.
struct Census {
  int live = 0;
  int finalReleases = 0;
  HRESULT constructResult = S_OK;
};
Census gCensus;

class CProbe final : public CObjectImpl<CProbe, IProbe, ISecond> {
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
  // Declared in the class's own slot order: Gamma, Alpha, Beta.
  int32_t Gamma() override { return 3; }
  int32_t Alpha() override { return 1; }
  int32_t Beta() override { return 2; }
};

class ObjectModel : public ::testing::Test {
 protected:
  void SetUp() override { gCensus = Census{}; }
  void TearDown() override { EXPECT_EQ(gCensus.live, 0) << "an object leaked"; }
};

TEST_F(ObjectModel, CreationHandsOutOneReference) {
  IID iid = IID_IProbe;
  void* out = nullptr;
  ASSERT_EQ(CObject<CProbe>::_CreateInstance(nullptr, &iid, &out), S_OK);
  auto* probe = static_cast<IProbe*>(out);
  EXPECT_EQ(probe->Alpha(), 1);
  EXPECT_EQ(probe->AddRef(), 2u);
  EXPECT_EQ(probe->Release(), 1u);
  EXPECT_EQ(gCensus.live, 1);
  EXPECT_EQ(probe->Release(), 0u);
  EXPECT_EQ(gCensus.live, 0);
  EXPECT_EQ(gCensus.finalReleases, 1);
}

TEST_F(ObjectModel, FailingFinalConstructLeaksNothing) {
  gCensus.constructResult = E_OUTOFMEMORY;
  IID iid = IID_IProbe;
  void* out = reinterpret_cast<void*>(0x1);
  EXPECT_EQ(CObject<CProbe>::_CreateInstance(nullptr, &iid, &out), E_OUTOFMEMORY);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(gCensus.finalReleases, 1) << "FinalRelease runs also when creation fails";
}

TEST_F(ObjectModel, UnansweredIdentityOnCreationLeaksNothing) {
  IID iid = IID_IVariant;
  void* out = nullptr;
  EXPECT_EQ(CObject<CProbe>::_CreateInstance(nullptr, &iid, &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(CObject<CProbe>::_CreateInstance(nullptr, nullptr, &out), E_NOINTERFACE);
  EXPECT_EQ(CObject<CProbe>::_CreateInstance(nullptr, &iid, nullptr), E_POINTER);
}

TEST_F(ObjectModel, QueryInterfaceAnswersItsTable) {
  SmartPtr<IProbe> probe = CreateInstanceOf<CProbe, IProbe>();
  ASSERT_TRUE(probe);
  struct Case {
    const IID* iid;
    HRESULT expected;
  } cases[] = {
      {&IID_IUnknown, S_OK}, {&IID_IObjectInfo, S_OK}, {&IID_IProbe, S_OK}, {&IID_ISecond, S_OK},
      {&IID_NULL, E_NOINTERFACE}, {&IID_IVariant, E_NOINTERFACE}, {&IID_IString, E_NOINTERFACE},
  };
  for (const Case& c : cases) {
    void* out = reinterpret_cast<void*>(0x1);
    EXPECT_EQ(probe->QueryInterface(*c.iid, &out), c.expected);
    if (c.expected == S_OK) {
      ASSERT_NE(out, nullptr);
      EXPECT_EQ(test_support::RefCountOf(static_cast<IUnknown*>(out)), 2u);
      static_cast<IUnknown*>(out)->Release();
    } else {
      EXPECT_EQ(out, nullptr);
    }
  }
  EXPECT_EQ(probe->QueryInterface(IID_IProbe, nullptr), E_POINTER);
}

TEST_F(ObjectModel, SecondaryInterfaceReachesTheSameObject) {
  SmartPtr<IProbe> probe = CreateInstanceOf<CProbe, IProbe>();
  SmartPtr<ISecond> second = QueryAs<ISecond>(probe.get());
  ASSERT_TRUE(second);
  EXPECT_EQ(second->Gamma(), 3);
  EXPECT_TRUE(probe == second.get()) << "identity comparison through IUnknown";
  EXPECT_NE(static_cast<void*>(probe.get()), static_cast<void*>(second.get()));
}

TEST_F(ObjectModel, PrimaryTableFollowsTheClassSlotOrder) {
  SmartPtr<IUnknown> unknown = CreateInstanceOf<CProbe, IUnknown>();
  auto* table = reinterpret_cast<CProbePrimaryTable*>(unknown.get());
  EXPECT_EQ(table->Gamma(), 3);
  EXPECT_EQ(table->Alpha(), 1);
  EXPECT_EQ(table->Beta(), 2);
}

TEST_F(ObjectModel, GetNameGivesTheStaticClassName) {
  SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(CreateInstanceOf<CProbe, IUnknown>().get());
  tagREFString first{}, second{};
  ASSERT_EQ(info->GetName(0, &first), S_OK);
  ASSERT_EQ(info->GetName(99, &second), S_OK);
  EXPECT_EQ(first.length, 5);
  EXPECT_EQ(std::wstring(first.text, 5), L"Probe");
  EXPECT_EQ(first.text, second.text) << "no copy: the static text itself";
  EXPECT_EQ(info->GetName(0, nullptr), E_POINTER);
}

TEST_F(ObjectModel, ReferenceCountingIsAtomic) {
  SmartPtr<IProbe> probe = CreateInstanceOf<CProbe, IProbe>();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < 20000; ++i) {
        probe->AddRef();
        probe->Release();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(test_support::RefCountOf(probe.get()), 1u);
}

TEST(SmartPointers, HoldAndRelease) {
  gCensus = Census{};
  {
    SmartPtr<IProbe> a = CreateInstanceOf<CProbe, IProbe>();
    SmartPtr<IProbe> b = a;
    EXPECT_EQ(test_support::RefCountOf(a.get()), 2u);
    SmartPtr<IProbe> c = std::move(b);
    EXPECT_FALSE(b);
    EXPECT_EQ(test_support::RefCountOf(a.get()), 2u);
    IProbe* raw = c.Detach();
    EXPECT_EQ(raw->Release(), 1u);
  }
  EXPECT_EQ(gCensus.live, 0);
}

TEST(SmartPointers, IdentityComparison) {
  SmartPtr<IUnknown> none;
  SmartPtr<IUnknown> one = CreateInstanceOf<CProbe, IUnknown>();
  SmartPtr<IUnknown> other = CreateInstanceOf<CProbe, IUnknown>();
  EXPECT_TRUE(none == nullptr);
  EXPECT_FALSE(none == one.get());
  EXPECT_FALSE(one == nullptr);
  EXPECT_FALSE(one == other.get());
  EXPECT_TRUE(one == QueryAs<ISecond>(one.get()).get());
}

TEST(SmartPointers, CastReplacesTheHeldPointer) {
  SmartPtrIID<ISecond, &IID_ISecond> second;
  SmartPtr<IUnknown> probe = CreateInstanceOf<CProbe, IUnknown>();
  EXPECT_EQ(second.Cast(probe.get()), S_OK);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->Gamma(), 3);
  EXPECT_EQ(second.Cast(nullptr), E_FAIL);
  EXPECT_FALSE(second) << "a failed cast leaves null";
  SmartPtrIID<IVariant, &IID_IVariant> variant;
  EXPECT_EQ(variant.Cast(probe.get()), E_NOINTERFACE);
  EXPECT_FALSE(variant);
}

// A container that answers the identities it is asked for through its moniker.
class CContainerMoniker final : public CObjectImpl<CContainerMoniker, ICollectionMoniker> {
 public:
  static constexpr wchar_t kObjectName[] = L"ContainerMoniker";
  static constexpr InterfaceEntry<CContainerMoniker> kInterfaces[] = {
      {&IID_ICollectionMoniker, InterfaceOf<CContainerMoniker, ICollectionMoniker>},
  };
  HRESULT Reserved1() override { return E_NOTIMPL; }
  HRESULT FindObject(IID* iid, void** object) override {
    if (!target) return E_NOINTERFACE;
    return target->QueryInterface(*iid, object);
  }
  SmartPtr<IUnknown> target;
};

class CHost final : public CObjectImpl<CHost, IHostWindow> {
 public:
  static constexpr wchar_t kObjectName[] = L"Host";
  static constexpr InterfaceEntry<CHost> kInterfaces[] = {{&IID_IHostWindow, InterfaceOf<CHost, IHostWindow>}};
  HRESULT Reserved1() override { return E_NOTIMPL; }
  HRESULT Reserved2() override { return E_NOTIMPL; }
  HRESULT GetHostedObject(IUnknown** object) override {
    if (!hosted) return E_FAIL;
    return hosted.CopyTo(object);
  }
  SmartPtr<IUnknown> hosted;
};

TEST(QueryFallbacks, DirectAnswerThenMonikerThenHost) {
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

TEST(ResourceLock, IsRecursive) {
  CResourceLock lock;
  ASSERT_EQ(lock.Lock(), 0);
  ASSERT_EQ(lock.Lock(), 0) << "the same thread takes it again";
  ASSERT_EQ(lock.Unlock(), 0);

  // Still held once by this thread, so another thread waits until the last unlock.
  std::atomic<bool> acquired{false};
  std::thread other([&] {
    lock.Lock();
    acquired = true;
    lock.Unlock();
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(acquired) << "one unlock of two must not release the lock";
  EXPECT_EQ(lock.Unlock(), 0);
  other.join();
  EXPECT_TRUE(acquired);
  EXPECT_EQ(lock.Unlock(), EPERM) << "unlocking a lock this thread does not hold is refused";
}

}  // namespace
