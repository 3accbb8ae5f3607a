// What the tests of the sample components share: the simulator's side, with its materials, and the messages that it
// receives.
#pragma once

#include <gtest/gtest.h>
#include <wrl/client.h>

#include <memory>
#include <string>
#include <vector>

#include "samples/component/cape_failure.h"
#include "samples/component/variant.h"
#include "samples/material/material.h"
#include "samples/material/simulation_context.h"

namespace zelt::sample {

// A text argument, which lives until the end of the call.
inline BSTR B(_bstr_t&& text) { return text.GetBSTR(); }

template <class I>
Microsoft::WRL::ComPtr<I> Query(IUnknown* object)
{
    Microsoft::WRL::ComPtr<I> result;
    EXPECT_EQ(S_OK, object->QueryInterface(IID_PPV_ARGS(&result)));
    return result;
}

inline std::wstring Description(IUnknown* object) { return DescribeFailure(object, E_FAIL); }

class SampleTest : public testing::Test {
protected:
    // Makes a slate of these compounds, with both phases, and starts to collect messages.
    void SetCompounds(std::initializer_list<const wchar_t*> ids)
    {
        auto slate = std::make_shared<Slate>();
        for (const wchar_t* id : ids) slate->compounds.push_back({id, L"", id, 300, 100, L""});
        slate->phases = {{L"Vapor", L"Vapor", L""}, {L"Liquid", L"Liquid", L""}};
        flowsheet->slate = slate;
        flowsheet->onMessage = [this](const wchar_t*, const std::wstring& text) { messages.push_back(text); };
    }

    template <class I>
    Microsoft::WRL::ComPtr<I> MakeMaterial()
    {
        Microsoft::WRL::ComPtr<I> material;
        EXPECT_EQ(S_OK, com::Create<Material>(IID_PPV_ARGS(&material), flowsheet->slate, std::wstring(L"Feed"),
                                              ReadHook(), flowsheet->link));
        return material;
    }

    Microsoft::WRL::ComPtr<IDispatch> MakeContext()
    {
        Microsoft::WRL::ComPtr<IDispatch> context;
        EXPECT_EQ(S_OK, com::Create<SimulationContext>(IID_PPV_ARGS(&context), flowsheet));
        return context;
    }

    static HRESULT SetParameter(IUnknown* package, const wchar_t* name, const _variant_t& value)
    {
        Microsoft::WRL::ComPtr<IDispatch> collection, item;
        EXPECT_EQ(S_OK, Query<ICapeUtilities>(package)->get_parameters(&collection));
        return SetIn(collection.Get(), name, value);
    }

    static HRESULT SetIn(IDispatch* collection, const wchar_t* name, const _variant_t& value)
    {
        Microsoft::WRL::ComPtr<IDispatch> item;
        const HRESULT found = Query<ICapeCollection>(collection)->Item(_variant_t(name), &item);
        return FAILED(found) ? found : Query<ICapeParameter>(item.Get())->put_value(value);
    }

    std::shared_ptr<Flowsheet> flowsheet = std::make_shared<Flowsheet>();
    std::vector<std::wstring> messages;
};

}  // namespace zelt::sample
