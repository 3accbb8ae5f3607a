// The splitter: divides a stream into two with the same state. Saves nothing and has no reports.
#pragma once

#include "samples/units/classes.h"
#include "samples/units/unit_operation.h"

namespace zelt::sample {

class SplitterModel final : public UnitModel {
public:
    static constexpr const wchar_t* kDescription = L"Splits a stream into two with the same state";

    SplitterModel();

protected:
    std::vector<std::wstring> Run() override;

private:
    enum Port : std::size_t { kInlet, kFirstOutlet, kSecondOutlet };
};

using Splitter = UnitOperation<SplitterModel, kSplitterClass, NoPersistence, NoReports>;

}  // namespace zelt::sample
