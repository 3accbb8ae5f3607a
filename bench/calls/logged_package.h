// A package and a material, each behind a proxy. Both proxies log to one temporary file, deleted at the end, and record to
// another if wanted.
#pragma once

#include <wrl/client.h>

#include <cstdio>
#include <string>

#include "bench/calls/plain_package.h"
#include "log/recording/call_recorder.h"
#include "log/log_document.h"
#include "log/log_options.h"
#include "thermo/material_object.h"
#include "thermo/property_package_11.h"

namespace zelt::bench {

struct TemporaryLog {
    TemporaryLog()
    {
        wchar_t folder[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        GetTempFileNameW(folder, L"zlg", 0, name);
        path = name;
        if (file.Open(path) != 0) std::fprintf(stderr, "The log cannot be opened.\n");
    }
    ~TemporaryLog()
    {
        file.Close();
        DeleteFileW(path.c_str());
    }
    TemporaryLog(const TemporaryLog&) = delete;
    TemporaryLog& operator=(const TemporaryLog&) = delete;

    std::wstring path;
    LogFile file;
};

class LoggedPackage {
public:
    explicit LoggedPackage(bool isRecorded = false)
    {
        options.promptOpenLog = false;
        DocumentHold document(new LogDocument(std::move(log.file), "Package", "benchmark", log.path, options));
        if (isRecorded) {
            recording.file.Close();
            int error = 0;
            document.Get()->RecordTo(CallRecorder::Make(recording.path, error), "benchmark");
            if (error != 0) std::fprintf(stderr, "The recording cannot be opened.\n");
        }
        package = new PlainPackage;
        stream = new PlainMaterial;
        proxy = new CPropertyPackage11;
        proxy->AttachAsRoot(package.Get(), document.Get(), "Package");
        proxy.As(&compounds);
        materialProxy = new CMaterialObject(ThermoVersion::CapeOpen11);
        materialProxy->AttachThrough(stream.Get(), Crossing::Inbound, *proxy.Get());
        materialProxy.As(&material);
    }

    std::string Text() const { return Content(log.path); }
    std::string Recording() const { return Content(recording.path); }

private:
    static std::string Content(const std::wstring& path)
    {
        std::string text;
        FILE* file = _wfopen(path.c_str(), L"rb");
        if (!file) return text;
        char buffer[4096];
        while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, file)) text.append(buffer, size);
        std::fclose(file);
        return text;
    }

    TemporaryLog log, recording;
    LogOptions options;
    Microsoft::WRL::ComPtr<PlainPackage> package;
    Microsoft::WRL::ComPtr<PlainMaterial> stream;
    Microsoft::WRL::ComPtr<CPropertyPackage11> proxy;
    Microsoft::WRL::ComPtr<CMaterialObject> materialProxy;

public:
    Microsoft::WRL::ComPtr<ICapeThermoCompounds> compounds;
    Microsoft::WRL::ComPtr<ICapeThermoMaterial> material;
};

}  // namespace zelt::bench
