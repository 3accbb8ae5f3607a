// The COM objects of parameters: a collection, a parameter, and its specification with one of the standard's five typed
// interfaces. The collection serves whatever else the standard keeps in collections, too.
#pragma once

#include <span>

#include "samples/component/parameter.h"

namespace zelt::sample {

// Items are found by their number from 1, or by their component's name.
Microsoft::WRL::ComPtr<IDispatch> CreateCollection(std::wstring name,
                                                   std::span<const Microsoft::WRL::ComPtr<IDispatch>> items,
                                                   std::wstring description = L"A collection of parameters");
Microsoft::WRL::ComPtr<IDispatch> CreateParameter(std::shared_ptr<ParameterState> state);
// `name` is the parameter's; an element of a list has a specification object of its own.
Microsoft::WRL::ComPtr<IDispatch> CreateSpecification(const std::wstring& name, const Specification& specification);

}  // namespace zelt::sample
