// The COM objects of parameters: a collection, a parameter, and its specification with one of the standard's five typed
// interfaces. A unit's ports are in a collection of the same class.
#pragma once

#include <span>

#include "samples/component/parameter.h"

namespace zelt::sample {

// Items are found by their number, from 1, or by their component name.
Microsoft::WRL::ComPtr<IDispatch> CreateCollection(std::wstring name,
                                                   std::span<const Microsoft::WRL::ComPtr<IDispatch>> items,
                                                   std::wstring description = L"A collection of parameters");
Microsoft::WRL::ComPtr<IDispatch> CreateParameter(std::shared_ptr<ParameterState> state);
// `name` is the parameter's; each element of a list has its own specification object.
Microsoft::WRL::ComPtr<IDispatch> CreateSpecification(const std::wstring& name, const Specification& specification);

}  // namespace zelt::sample
