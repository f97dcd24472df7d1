// Readers and writers of a parameter set: XML elements, object XML, one CSV
// line and the folder-stream layout (docs/formats.md). They work through
// IParameters alone, so any set can use them; IParametersImpl's Params_*
// operations forward here.
//
// Every function returns 0, also for a stream of the wrong kind (nothing is
// read or written then). A reader in replace mode (kLoadReplace) reads the
// whole stream before it empties the set, so the set changes only once the
// stream has been read.
#pragma once

#include "params.h"

HRESULT ParamsSaveXML(IParameters* set, IDataStream* stream, int32_t flags);
HRESULT ParamsLoadXML(IParameters* set, IDataStream* stream, int32_t flags);
HRESULT ParamsSaveXMLUnk(IParameters* set, IDataStream* stream, int32_t flags);
HRESULT ParamsLoadXMLUnk(IParameters* set, IDataStream* stream, int32_t flags);
HRESULT ParamsSaveCSV(IParameters* set, IDataStream* stream, int32_t flags);
HRESULT ParamsSaveFolderStream(IParameters* set, IDataStream* stream, int32_t flags);
HRESULT ParamsLoadFolderStream(IParameters* set, IDataStream* stream, int32_t flags);
