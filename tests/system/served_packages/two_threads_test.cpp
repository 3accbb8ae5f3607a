// A simulator that calculates on pool threads calls one package from two of them. While the package asks the first thread's
// material, the second call enters. The calls nest, and each gets the results that a single thread gets from the package in
// process.
#include <gtest/gtest.h>

#include <thread>

#include "samples/component/variant.h"
#include "samples/material/material.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/unit/support/long_run.h"

namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;
using Flashes = std::vector<std::vector<double>>;

// The number of flashes: 100 in an ordinary run.
int Count() { return 100 * Effort(); }

// Flashes a feed at conditions that differ from flash to flash. Returns the fraction and the composition of each phase.
std::vector<double> Flash(ICapeThermoPropertyPackage* package, const std::shared_ptr<const sample::Slate>& slate,
                          int number)
{
    const ComPtr<sample::Material> feed(new sample::Material(slate));
    ComPtr<ICapeThermoMaterialObject> material;
    ComPtr<IDispatch> face;
    com::Check(feed.As(&material));
    com::Check(feed.As(&face));
    const auto set = [&](const wchar_t* property, const wchar_t* basis, std::vector<double> values) {
        com::Check(material->SetProp(_bstr_t(property), _bstr_t(L"Overall"), _variant_t(), _bstr_t(L""), _bstr_t(basis),
                                     sample::MakeDoubles(values)));
    };
    const double share = 0.05 + 0.9 * (number % 97) / 97.0;
    set(L"temperature", L"", {340.0 + number % 31});
    set(L"pressure", L"", {101325.0});
    set(L"fraction", L"mole", {share, (1 - share) / 2, (1 - share) / 2});
    com::Check(package->CalcEquilibrium(face.Get(), _bstr_t(L"TP"), _variant_t()));
    _variant_t phases;
    com::Check(material->get_PhaseIds(&phases));
    std::vector<double> result;
    for (const std::wstring& phase : sample::ReadStrings(phases, L"PhaseIds")) {
        for (const wchar_t* property : {L"phaseFraction", L"fraction"}) {
            _variant_t values;
            const wchar_t* calcType = *property == L'p' ? L"Mixture" : L"";
            com::Check(material->GetProp(_bstr_t(property), _bstr_t(phase.c_str()), _variant_t(), _bstr_t(calcType),
                                         _bstr_t(L"mole"), &values));
            for (const double value : sample::ReadDoubles(values, L"results")) result.push_back(value);
        }
    }
    return result;
}

class TwoThreads : public ServedPackages {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        Export({{kSampleThermoSystem, 2, L"Aromatics", L"Shared", IsLogged()}});
        package = Resolve(kThisEdition[OwnClass::ThermoSystem].progId, CLSCTX_LOCAL_SERVER, L"Shared");
        ASSERT_TRUE(package);
        slate = std::make_shared<const sample::Slate>(sample::ReadSlate(package.Get()));
        ASSERT_EQ(3u, slate->compounds.size());
    }
    virtual bool IsLogged() const { return false; }

    static ComPtr<ICapeThermoPropertyPackage> Resolve(const wchar_t* system, DWORD context, const wchar_t* name)
    {
        CLSID classId;
        EXPECT_EQ(S_OK, CLSIDFromString(system, &classId));
        ComPtr<ICapeThermoSystem> manager;
        ComPtr<IDispatch> resolved;
        ComPtr<ICapeThermoPropertyPackage> found;
        EXPECT_EQ(S_OK, CoCreateInstance(classId, nullptr, context, IID_PPV_ARGS(&manager)));
        if (!manager) return found;
        EXPECT_EQ(S_OK, manager->ResolvePropertyPackage(_bstr_t(name), &resolved));
        EXPECT_EQ(S_OK, resolved.As(&found));
        return found;
    }
    // Makes every second flash, from `first` on, on a thread with its own apartment.
    std::thread Start(int first, int count, Flashes& results) const
    {
        IStream* stream = nullptr;
        EXPECT_EQ(S_OK,
                  CoMarshalInterThreadInterfaceInStream(__uuidof(ICapeThermoPropertyPackage), package.Get(), &stream));
        return std::thread([=, this, &results] {
            EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
            {
                ComPtr<ICapeThermoPropertyPackage> own;
                EXPECT_EQ(S_OK, CoGetInterfaceAndReleaseStream(stream, IID_PPV_ARGS(&own)));
                for (int number = first; own && number < count; number += 2) {
                    const HRESULT flashed = com::NoThrow([&] {
                        results[static_cast<std::size_t>(number)] = Flash(own.Get(), slate, number);
                        return S_OK;
                    });
                    EXPECT_EQ(S_OK, flashed) << number;
                }
            }
            CoUninitialize();
        });
    }
    void Compare(int count)
    {
        Flashes alone(static_cast<std::size_t>(count)), together(alone.size());
        const auto unserved = Resolve(kSampleThermoSystem, CLSCTX_INPROC_SERVER, L"Aromatics");
        ASSERT_TRUE(unserved);
        for (int number = 0; number < count; ++number) {
            alone[static_cast<std::size_t>(number)] = Flash(unserved.Get(), slate, number);
        }
        std::thread even = Start(0, count, together), odd = Start(1, count, together);
        even.join();
        odd.join();
        // The results are equal to the bit.
        for (std::size_t number = 0; number < alone.size(); ++number)
            EXPECT_EQ(alone[number], together[number]) << number;
        package.Reset();
    }

    ComPtr<ICapeThermoPropertyPackage> package;
    std::shared_ptr<const sample::Slate> slate;
};

TEST_F(TwoThreads, GetTheResultsOfOne) { Compare(Count()); }

class LoggedTwoThreads : public TwoThreads {
    bool IsLogged() const override { return true; }
};

// Every call in the log is complete, and a call that enters while another waits is nested in it.
TEST_F(LoggedTwoThreads, AreNestedInTheLogAsTheyEntered)
{
    Compare(20);
    const std::string log = OnlyLog();
    constexpr std::string_view kFlash = "<func name=\"ICapeThermoPropertyPackage::CalcEquilibrium\"";
    int depth = 0, flashes = 0;
    for (std::size_t at = log.find('<'); at != log.npos; at = log.find('<', at + 1)) {
        if (log.compare(at, 6, "<func ") == 0) {
            ++depth;
            flashes += log.compare(at, kFlash.size(), kFlash) == 0;
        } else if (log.compare(at, 7, "</func>") == 0) {
            ASSERT_GE(--depth, 0);
        }
    }
    EXPECT_EQ(0, depth);
    EXPECT_EQ(20, flashes);
    EXPECT_TRUE(log.ends_with("</zeltlogdocument>\r\n"));
}

}  // namespace
}  // namespace zelt::test
