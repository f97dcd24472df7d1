// Interface identities. An identity is not chosen by hand: it is derived from
// the interface's name by __IIDOfc, so any module can compute the identity of
// any interface from its name alone. The rule packs one 5-bit code per
// character (letters 1-26 regardless of case, digits 0-4 as 28-32, anything
// else 27) for at most 25 characters, little-endian.
//
// Quirks kept on purpose because every module of the framework relies on
// them: case is ignored, only the first 25 characters count, "_" and "5"-"9"
// share a code, and the digit "4" (code 32) spills a sixth bit into the next
// character's position, so two names may share an identity.
#pragma once

#include "base_types.h"

constexpr IID __IIDOfc(const char* name) {
  IID result{};
  int length = 0;
  while (name && name[length] != '\0') ++length;
  if (length > 25) length = 25;
  int byteIndex = 0;
  int bitPosition = 0;
  for (int i = 0; i < length; ++i) {
    const char c = name[i];
    unsigned code = 27;
    if (c >= 'A' && c <= 'Z') code = static_cast<unsigned>(c - 'A' + 1);
    else if (c >= 'a' && c <= 'z') code = static_cast<unsigned>(c - 'a' + 1);
    else if (c >= '0' && c <= '4') code = static_cast<unsigned>(c - 20);
    const bool hasNext = byteIndex + 1 < 16;
    unsigned word = result.bytes[byteIndex] | (hasNext ? result.bytes[byteIndex + 1] << 8 : 0u);
    word |= code << bitPosition;
    result.bytes[byteIndex] = static_cast<unsigned char>(word & 0xFF);
    if (hasNext) result.bytes[byteIndex + 1] = static_cast<unsigned char>((word >> 8) & 0xFF);
    bitPosition += 5;
    if (bitPosition > 7) {
      bitPosition -= 8;
      ++byteIndex;
    }
  }
  return result;
}

// The untyped identity (any interface) and the one fixed identity not derived from a name.
inline constexpr IID IID_NULL{};
inline constexpr IID IID_IUnknown{{0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

// The framework's interface names, in the order of its start-up table.
#define FRAMEWORK_INTERFACE_NAMES(X)                                                              \
  X(IBindableObject) X(ICollectionMoniker) X(IComponentCollection) X(IComponentString)            \
  X(IContainedObject) X(ICreatableString) X(ICreatableSimpleCollection) X(ICSVStream)             \
  X(IDataPersist) X(IDataPersistEx) X(IDataStream) X(IDisconnectableObject) X(IDblVector)         \
  X(IEventSource) X(IExtCollection) X(IFileArchive) X(IFileAttributes) X(IFileAttributesDef)      \
  X(IFileNameCollection) X(IFileNameCollectionBase) X(IFileInfo) X(IFixedSizeCollection)          \
  X(IFolderInfo) X(IFolderArchive) X(IFolderStream) X(IINIFile) X(IINIFileEx) X(IINIStream)       \
  X(IInputParameter) X(IInputParameters) X(IParent) X(IRegistry) X(IRegistryEx)                   \
  X(IRenderableObject) X(IRenderableObjectState) X(INamedCollection) X(IObjectInfo)               \
  X(IParameters) X(IParametersCreatable) X(IParametricObject) X(IPMText) X(ISimpleCollection)     \
  X(IStackCollection) X(IString) X(ISuperCollection) X(ITABStream) X(IVariant) X(IXMLStream)      \
  X(IXMLStreamEx) X(IXMLFile) X(IZipStream) X(_ICollectionEvents) X(_ICollectionItemEvent)        \
  X(IStreamTransform) X(IUIManager) X(IUIPropInterrogate) X(IUIPropInterrogateEx)                 \
  X(IUIPropertyPageSpecify) X(IUIUtils) X(IStringTable) X(ICalibration) X(IHomogeneousTransform)  \
  X(IHomogeneousCalibration) X(ILinearCalibration) X(ILinearTransform) X(IMatrix) X(ITransform)   \
  X(IPMSearch) X(IPMRenderStyle) X(IPMRenderer) X(ICANVASGraphics) X(ICANVASClip) X(IArc)         \
  X(ICurve) X(ICurveLagrange) X(ICurve2D) X(ICurveSpline) X(IEllipse) X(IFitAndFilter)            \
  X(IGeometricAssembly) X(IGeometryCreator) X(IGeometricGrid) X(IGeometricFitting)                \
  X(IGeometricProject) X(IGeometry) X(IGeometryFitter) X(IHelicalThread) X(ILineSegment)          \
  X(ILineCreatable) X(IPoint) X(IPoints) X(IPointsCollection) X(IPointVector) X(IPolar)           \
  X(IPolarEx) X(IPolynomial) X(IPlane) X(IReplicableObject) X(ISprocket)                          \
  X(ITransformableObject) X(IMetrology) X(IMETRAngle) X(IMETRLength) X(IMETRPointsStats)          \
  X(IActivatableObject) X(IToolTipWindow) X(IUIColorPicker) X(IUIEntity) X(IUIEntityCollection)   \
  X(IUIExtent) X(IUIDropSource) X(IUIDropTarget) X(IUIFileArchive) X(IUIKeyboard)                 \
  X(IUIKeyboardInput) X(IUITouchInput) X(IUILineDisplayable) X(IUIManagerCollection)              \
  X(IUIMouseInput) X(IUIParamEdit) X(IUIPropertyPage) X(IUIPropertyPageCollection) X(IUINode)     \
  X(IUINodeContainer) X(IUIRawInput) X(IUIRefreshableObject) X(_IUIRefreshEvent) X(IUIUndoRedo)   \
  X(_IUIColorPickerEvents) X(_IUIContainerEvents) X(_IUIKeyboardEvents)                           \
  X(_IUIParamEditNotification) X(_IUIPropFrameEvents) X(IButton) X(IButtonCollection) X(IUIGrid)  \
  X(IUIList) X(_IUIListEvent) X(IUIPlotAxis) X(IUIPlotCollection) X(IUIPlotCurve)                 \
  X(IUIPlotData) X(IUIPlotHistogram) X(IUIPlotItem) X(IUIPlotLegend) X(IUIPlotLine)               \
  X(IUIPlotPoint) X(IUIPlotTitle) X(IUIPlotScale) X(IUIPlotScale2) X(_IUIPlotEvents)              \
  X(IUIScrollBar) X(ITabCollectionCreatable) X(_ITabCollectionEvents) X(ITabCollection) X(IUITab) \
  X(IUITree) X(IUIVerb) X(IUIVerbCollection) X(IUIVerbCollectionSpecify) X(IUIPopupCollection)    \
  X(IUICursor) X(IApplicationManager) X(IApplicationManagers) X(IConfirmationWindow)              \
  X(IHostWindow) X(IHostWindowLite) X(IHostWindowLess) X(IInputWindow) X(ILayout)                 \
  X(ILayoutCollection) X(IMessageWindow) X(IPasswordAccess) X(IUILayout) X(IWindow)               \
  X(IWindowCollection) X(IWindowEvent) X(IWorkspace) X(IExpression) X(IParametersCreator)         \
  X(IRunningObjectTableEx) X(IStringCollection) X(ITextParser) X(IFileArchiveDB) X(IUISpreadSheet)

#define FRAMEWORK_DECLARE_IID(name) inline constexpr IID IID_##name = __IIDOfc(#name);
FRAMEWORK_INTERFACE_NAMES(FRAMEWORK_DECLARE_IID)
#undef FRAMEWORK_DECLARE_IID

// Interfaces outside the start-up table.
inline constexpr IID IID_IStringChangeCounter = __IIDOfc("IStringChangeCounter");
