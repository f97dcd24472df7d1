// Bootstrapping of the framework's basic value objects (strings, variants,
// collections) and the other factories of framework objects.
//
// Strings, variants and collections are needed before any other object can
// be described, so their component objects are made once and kept: through
// the global collection when there is one, else straight from "CollectionsEx"
// with the component told its module and class name.
#include "framework_objects.h"

#include <atomic>
#include <mutex>

#include "module_loader.h"
#include "strings/ref_string.h"

namespace {

// A component object made on first use and kept until unload. Threads that
// arrive together make it once: the first takes the lock and makes it, the
// others wait and then see it; later calls read it without a lock. A failed
// making leaves it null, so the next call tries again.
class LazyComponent {
 public:
  ~LazyComponent() {
    if (IComponentString* component = m_Component.load(std::memory_order_acquire)) component->Release();
  }

  template <class Make>
  IComponentString* Get(Make&& make) {
    if (IComponentString* component = m_Component.load(std::memory_order_acquire)) return component;
    std::lock_guard<std::mutex> guard(m_Making);
    if (IComponentString* component = m_Component.load(std::memory_order_acquire)) return component;
    IComponentString* made = make().Detach();
    m_Component.store(made, std::memory_order_release);
    return made;
  }

 private:
  std::atomic<IComponentString*> m_Component{nullptr};
  std::mutex m_Making;
};

SmartPtr<IComponentString> MakeBasicComponent(const wchar_t* className) {
  SmartPtr<IComponentString> component;
  if (SmartPtr<IComponentCollection> collection = CurrentGlobalComponents()) {
    collection->CreateByName(RefOf(className), nullptr, component.ReceiveVoid());
  }
  if (component) return component;

  CreationFunction create = MODULECreateFunction(RefOf(L"CollectionsEx"), RefOf(L"ComponentString"));
  if (!create) return component;
  IID iid = IID_IComponentString;
  create(nullptr, &iid, component.ReceiveVoid());
  if (component) {
    component->SetProperty(kComponentModuleName, RefOf(L"Collections"));
    component->SetProperty(kComponentClassName, RefOf(className));
  }
  return component;
}

// Asks the component (null allowed) for a new instance of I.
template <class I>
I* CreateInstanceFrom(IComponentString* component) {
  if (!component) return nullptr;
  IID iid = IIDOf<I>();
  void* answer = nullptr;
  component->CreateInstance(&iid, &answer);
  return static_cast<I*>(answer);
}

// Keeps the component in `slot` (made on first use) and asks it for a new instance.
template <class I>
I* CreateFromBasicComponent(LazyComponent& slot, const wchar_t* className) {
  return CreateInstanceFrom<I>(slot.Get([className] { return MakeBasicComponent(className); }));
}

}  // namespace

ICreatableString* CREFString::CreateString() {
  static LazyComponent gStringComponent;
  return CreateFromBasicComponent<ICreatableString>(gStringComponent, L"CreatableString");
}

IVariant* CREFString::CreateVariant() {
  static LazyComponent gVariantComponent;
  return CreateFromBasicComponent<IVariant>(gVariantComponent, L"Variant");
}

ISuperCollection* CREFString::CreateCollection() {
  static LazyComponent gCollectionComponent;
  return CreateFromBasicComponent<ISuperCollection>(gCollectionComponent, L"SuperCollection");
}

IParametersCreatable* BASEObject::CreateParameters() {
  static LazyComponent gParametersCreatable;
  return CreateInstanceFrom<IParametersCreatable>(gParametersCreatable.Get([] {
    SmartPtr<ICreatableString> name = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
    if (name) name->SetText(RefOf(L"ParametersCreatable"));
    return SmartPtr<IComponentString>::Adopt(name ? GetComponentString(name.get()) : nullptr);
  }));
}

IDblVector* BASEObject::CreateDBLBuffer() { return CreateObjectAs<IDblVector>(L"DblBuffer").Detach(); }
