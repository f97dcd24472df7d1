// The exception boundary: every allocation an operation makes is failed in turn (this program replaces the
// global operator new, which the loaded modules use too); the operation must answer a result code, leave the
// collection as it was, and leak nothing.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>

#include "parameters/collection_test_support.h"

namespace {

std::atomic<long> gLiveAllocations{0};
std::atomic<long> gAllocationsBeforeFailure{-1};  // -1: never fail
std::atomic<bool> gFailed{false};

void* Allocate(size_t size) {
  long left = gAllocationsBeforeFailure.load();
  if (left >= 0 && gAllocationsBeforeFailure.fetch_sub(1) == 0) {
    gFailed = true;
    throw std::bad_alloc();
  }
  void* block = std::malloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  ++gLiveAllocations;
  return block;
}

void Free(void* block) {
  if (!block) return;
  --gLiveAllocations;
  std::free(block);
}

}  // namespace

void* operator new(size_t size) { return Allocate(size); }
void* operator new[](size_t size) { return Allocate(size); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, size_t) noexcept { Free(block); }
void operator delete[](void* block, size_t) noexcept { Free(block); }

namespace {

using namespace collection_test;

// Makes the `n`th allocation from now fail; Stop turns failures off again.
void FailAllocation(long n) {
  gFailed = false;
  gAllocationsBeforeFailure = n;
}
void StopFailing() { gAllocationsBeforeFailure = -1; }

template <class Collection>
struct Operation {
  const char* what;
  std::function<HRESULT(Collection*)> run;
  bool outOfMemoryAnswered;  // some failed allocation is answered 0x8007000E (others may be absorbed)
};

// For each allocation the operation makes, a run in which that one fails: the operation either absorbs the
// failure (an index is dropped, a lookup scans) and succeeds, or fails and leaves the collection as it was.
template <class Collection>
void FailEachAllocation(const Operation<Collection>& operation, const std::function<SmartPtr<Collection>()>& make) {
  bool outOfMemory = false;
  for (long n = 0;; ++n) {
    const long liveBefore = gLiveAllocations;
    {
      SmartPtr<Collection> collection = make();
      const std::vector<std::wstring> before = NamesOf(collection.get());
      FailAllocation(n);
      const HRESULT result = operation.run(collection.get());
      StopFailing();
      if (!gFailed) {
        EXPECT_EQ(result, S_OK) << operation.what;
        break;
      }
      outOfMemory = outOfMemory || result == E_OUTOFMEMORY;
      if (result != S_OK) {
        EXPECT_EQ(NamesOf(collection.get()), before) << operation.what << ", allocation " << n;
      }
    }
    EXPECT_EQ(gLiveAllocations, liveBefore) << operation.what << " leaked at allocation " << n;
    ASSERT_LT(n, 1000) << operation.what << " never completed";
  }
  EXPECT_EQ(outOfMemory, operation.outOfMemoryAnswered) << operation.what;
}

std::vector<std::wstring> Names(int count) {
  std::vector<std::wstring> names;
  for (int i = 0; i < count; ++i) names.push_back(L"p" + std::to_wstring(i));
  return names;
}

class BoundaryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // The framework's components are made on first use and kept: make them now.
    SmartPtr<IParametersCreatable> warm = NewParameters();
    SmartPtr<ISuperCollection> also = NewSuperCollection();
    AddNamed(warm.get(), {L"w"}, MakeLong(1).get());
    AddNamed(also.get(), {L"w"}, warm.get());
  }
};

// 20 parameters: the next Add needs more slots.
TEST_F(BoundaryTest, ParameterSetOperationsFailCleanly) {
  SmartPtr<ICreatableString> key = MakeString(L"P3");
  SmartPtr<ICreatableString> fresh = MakeString(L"fresh");
  SmartPtr<IVariant> value = MakeLong(5);
  const Operation<IParametersCreatable> operations[] = {
      {"Add", [&](IParametersCreatable* s) { return s->Add(fresh.get(), value.get(), nullptr, 0); }, true},
      {"Set of a new name", [&](IParametersCreatable* s) { return s->Set(fresh.get(), value.get(), nullptr, 0, 0); },
       true},
      {"Set of an existing name", [&](IParametersCreatable* s) { return s->Set(key.get(), value.get(), nullptr, 0, 3); },
       false},
      {"get_Index", [&](IParametersCreatable* s) {
         int32_t index = -1;
         HRESULT result = s->get_Index(key.get(), &index);
         return result == S_OK && index == 3 ? S_OK : E_FAIL;
       },
       false},
  };
  for (const auto& operation : operations)
    FailEachAllocation<IParametersCreatable>(operation, [] {
      SmartPtr<IParametersCreatable> set = NewParameters();
      AddNamed(set.get(), Names(20), MakeLong(1).get());
      return set;
    });
}

// 1024 items: the next Add needs more slots.
TEST_F(BoundaryTest, NamedCollectionOperationsFailCleanly) {
  SmartPtr<ICreatableString> fresh = MakeString(L"fresh");
  SmartPtr<IParametersCreatable> item = NewParameters();
  const Operation<ISuperCollection> operations[] = {
      {"Add", [&](ISuperCollection* c) { return c->Add(fresh.get(), item.get(), nullptr, 0); }, true},
      {"Insert", [&](ISuperCollection* c) { return c->Insert(0, fresh.get(), item.get(), nullptr, 0); }, true},
  };
  for (const auto& operation : operations)
    FailEachAllocation<ISuperCollection>(operation, [&] {
      SmartPtr<ISuperCollection> collection = NewSuperCollection();
      AddNamed(collection.get(), Names(1024), item.get());
      return collection;
    });
}

}  // namespace
