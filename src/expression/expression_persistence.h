// Stream persistence of an expression: its text under the name "Formula" and
// its value under the name "Value", in an XML stream or a folder stream.
//
// XML: <Formula>text</Formula> and <Value>...</Value> inside the element the
// caller opened (BeginObject). A number is written as its shortest exact
// decimal text (an integer variant as plain digits), a text value in double
// quotes ("abc"), so that a value reads back with its kind. A missing
// element means no text or no value.
// Folder stream: a string entry "Formula" and a value entry "Value".
#pragma once

#include "expression/expression_state.h"

// E_POINTER for a null stream, E_INVALIDARG for a stream that is neither kind.
HRESULT SaveExpressionState(const ExpressionState& state, IDataStream* stream);
// Replaces text and value by what the stream holds.
HRESULT LoadExpressionState(ExpressionState& state, IDataStream* stream);
