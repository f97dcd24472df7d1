// Maps an interface type to its identity, so that typed queries need not
// repeat the IID next to the type.
#pragma once

#include "params.h"

template <class I>
struct InterfaceTraits;

#define DECLARE_INTERFACE_ID(I)                           \
  template <>                                             \
  struct InterfaceTraits<I> {                             \
    static constexpr const IID& iid() { return IID_##I; } \
  };

template <>
struct InterfaceTraits<IUnknown> {
  static constexpr const IID& iid() { return IID_IUnknown; }
};

DECLARE_INTERFACE_ID(IString)
DECLARE_INTERFACE_ID(ICreatableString)
DECLARE_INTERFACE_ID(IStringChangeCounter)
DECLARE_INTERFACE_ID(IVariant)
DECLARE_INTERFACE_ID(IComponentCollection)
DECLARE_INTERFACE_ID(IComponentString)
DECLARE_INTERFACE_ID(ICollectionMoniker)
DECLARE_INTERFACE_ID(IHostWindow)
DECLARE_INTERFACE_ID(IUINode)
DECLARE_INTERFACE_ID(ISimpleCollection)
DECLARE_INTERFACE_ID(IDblVector)
DECLARE_INTERFACE_ID(IStringCollection)
DECLARE_INTERFACE_ID(IDataPersist)
DECLARE_INTERFACE_ID(IObjectInfo)
DECLARE_INTERFACE_ID(IDataStream)
DECLARE_INTERFACE_ID(INamedCollection)
DECLARE_INTERFACE_ID(ISuperCollection)
DECLARE_INTERFACE_ID(ITabCollection)
DECLARE_INTERFACE_ID(IParameters)
DECLARE_INTERFACE_ID(IParametersCreatable)
DECLARE_INTERFACE_ID(IExpression)
DECLARE_INTERFACE_ID(IInputParameter)
DECLARE_INTERFACE_ID(IInputParameters)
DECLARE_INTERFACE_ID(IParametersCreator)
DECLARE_INTERFACE_ID(ITextParser)
DECLARE_INTERFACE_ID(IFileArchive)
DECLARE_INTERFACE_ID(IPMSearch)
DECLARE_INTERFACE_ID(IUIPropertyPageSpecify)
DECLARE_INTERFACE_ID(IParametricObject)
DECLARE_INTERFACE_ID(IUISpreadSheet)
DECLARE_INTERFACE_ID(IXMLStream)
DECLARE_INTERFACE_ID(IXMLStreamEx)
DECLARE_INTERFACE_ID(IXMLFile)
DECLARE_INTERFACE_ID(IStreamTransform)
DECLARE_INTERFACE_ID(IFolderStream)
DECLARE_INTERFACE_ID(IFileInfo)
DECLARE_INTERFACE_ID(ICSVStream)
DECLARE_INTERFACE_ID(IINIStream)
DECLARE_INTERFACE_ID(IINIFileEx)
DECLARE_INTERFACE_ID(IRegistry)
DECLARE_INTERFACE_ID(IRegistryEx)

template <class I>
constexpr const IID& IIDOf() {
  return InterfaceTraits<I>::iid();
}
