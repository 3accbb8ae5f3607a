// After a call through a proxy, the caller finds the error information of the failure that it receives, and none from other
// calls that the proxy made to the wrapped object.
#include <oleauto.h>

#include "system/narrow.h"
#include "fake_unit.h"

namespace zelt::test {
namespace {

void SetInformation(const wchar_t* description)
{
    ComPtr<ICreateErrorInfo> creation;
    ComPtr<IErrorInfo> information;
    ASSERT_EQ(S_OK, CreateErrorInfo(&creation));
    creation->SetDescription(const_cast<LPOLESTR>(description));
    ASSERT_EQ(S_OK, creation.As(&information));
    SetErrorInfo(0, information.Get());
}

// Takes the error information that the caller finds.
std::wstring TakeInformation()
{
    ComPtr<IErrorInfo> information;
    if (GetErrorInfo(0, &information) != S_OK) return L"<none>";
    BSTR description = nullptr;
    information->GetDescription(&description);
    const _bstr_t owned(description, false);
    return std::wstring(TextOf(description));
}

class ErrorInformation : public UnitFixture {
protected:
    ErrorInformation() { SetErrorInfo(0, nullptr); }

    // Runs `body` with a log, then without one.
    template <class Body>
    void EachWay(Body&& body)
    {
        for (const bool isLogged : {true, false}) {
            SCOPED_TRACE(isLogged ? "logged" : "not logged");
            unitScript = {};
            Begin(isLogged);
            InitNew();
            TakeInformation();
            body();
        }
    }
    HRESULT Save()
    {
        ComPtr<IStream> stream;
        EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
        return persistence->Save(stream.Get(), TRUE);
    }
};

TEST_F(ErrorInformation, OfSaveReplacesThatOfItsQuestionForTheSize)
{
    EachWay([this] {
        unitScript.sizeResult = unitScript.save = E_FAIL;
        unitScript.duringSizing = [] { SetInformation(L"GetSizeMax has failed"); };
        unitScript.duringSave = [](IStream*) { SetInformation(L"Save has failed"); };
        EXPECT_EQ(E_FAIL, Save());
        EXPECT_EQ(L"Save has failed", TakeInformation());
    });
}

TEST_F(ErrorInformation, IsNoneAfterASaveThatSucceedsThoughItsSizeFailed)
{
    EachWay([this] {
        unitScript.sizeResult = E_FAIL;
        unitScript.duringSizing = [] { SetInformation(L"GetSizeMax has failed"); };
        EXPECT_EQ(S_OK, Save());
        EXPECT_EQ(L"<none>", TakeInformation());
    });
}

TEST_F(ErrorInformation, OfTheSizeIsNotThatOfAFailingStream)
{
    EachWay([this] {
        unitScript.sizeResult = E_FAIL;
        unitScript.duringSizing = [] { SetInformation(L"GetSizeMax has failed"); };
        EXPECT_EQ(E_FAIL, persistence->Save(nullptr, TRUE));
        EXPECT_EQ(L"<none>", TakeInformation());
    });
}

TEST_F(ErrorInformation, OfOneFailingCallReachesTheCaller)
{
    EachWay([this] {
        unitScript.call = E_FAIL;
        unitScript.duringCall = [] { SetInformation(L"Calculate has failed"); };
        EXPECT_EQ(E_FAIL, As<ICapeUnit>(unit)->Calculate());
        EXPECT_EQ(L"Calculate has failed", TakeInformation());
    });
}

TEST_F(ErrorInformation, OfAFailingIsDirtyReachesTheCaller)
{
    EachWay([this] {
        unitScript.isDirty = E_FAIL;
        unitScript.duringDirty = [] { SetInformation(L"IsDirty has failed"); };
        EXPECT_EQ(E_FAIL, persistence->IsDirty());
        EXPECT_EQ(L"IsDirty has failed", TakeInformation());
    });
}

}  // namespace
}  // namespace zelt::test
