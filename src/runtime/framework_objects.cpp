// Bootstrapping of the framework's basic value objects (strings, variants,
// collections) and the other factories of framework objects.
//
// Strings, variants and collections are needed before any other object can
// be described, so their component objects are made once and kept: through
// the global collection when there is one, else straight from "CollectionsEx"
// with the component told its module and class name.
#include "framework_objects.h"

#include "module_loader.h"
#include "strings/ref_string.h"

namespace {

SmartPtr<IComponentString> MakeBasicComponent(const wchar_t* className) {
  SmartPtr<IComponentString> component;
  if (SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(
          gGlobalComponentCollection ? GLOBALComponents() : nullptr)) {
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

// Keeps the component in `slot` (made on first use) and asks it for a new instance.
template <class I>
I* CreateFromBasicComponent(SmartPtr<IComponentString>& slot, const wchar_t* className) {
  if (!slot) slot = MakeBasicComponent(className);
  if (!slot) return nullptr;
  IID iid = IIDOf<I>();
  void* answer = nullptr;
  slot->CreateInstance(&iid, &answer);
  return static_cast<I*>(answer);
}

}  // namespace

ICreatableString* CREFString::CreateString() {
  static SmartPtr<IComponentString> gStringComponent;
  return CreateFromBasicComponent<ICreatableString>(gStringComponent, L"CreatableString");
}

IVariant* CREFString::CreateVariant() {
  static SmartPtr<IComponentString> gVariantComponent;
  return CreateFromBasicComponent<IVariant>(gVariantComponent, L"Variant");
}

ISuperCollection* CREFString::CreateCollection() {
  static SmartPtr<IComponentString> gCollectionComponent;
  return CreateFromBasicComponent<ISuperCollection>(gCollectionComponent, L"SuperCollection");
}

IParametersCreatable* BASEObject::CreateParameters() {
  static SmartPtr<IComponentString> gParametersCreatable;
  if (!gParametersCreatable) {
    SmartPtr<ICreatableString> name = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
    if (!name) return nullptr;
    name->SetText(RefOf(L"ParametersCreatable"));
    gParametersCreatable = SmartPtr<IComponentString>::Adopt(GetComponentString(name.get()));
    if (!gParametersCreatable) return nullptr;
  }
  IID iid = IID_IParametersCreatable;
  void* answer = nullptr;
  gParametersCreatable->CreateInstance(&iid, &answer);
  return static_cast<IParametersCreatable*>(answer);
}

IDblVector* BASEObject::CreateDBLBuffer() { return CreateObjectAs<IDblVector>(L"DblBuffer").Detach(); }
