// A package and a material, each behind a proxy. The two proxies share a temporary log, a temporary recording, or both. The
// files are deleted at the end.
#pragma once

#include <wrl/client.h>

#include <cstdio>
#include <string>

#include "bench/calls/plain_package.h"
#include "log/recording/call_recorder.h"
#include "log/log_document.h"
#include "log/log_options.h"
#include "recording/record_reader.h"
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

enum class Sinks { Log, Recording, Both };

class LoggedPackage {
public:
    explicit LoggedPackage(Sinks sinks = Sinks::Log)
    {
        options.promptOpenLog = false;
        if (sinks == Sinks::Recording) {
            log.file.Close();
            log.file.OpenNothing();
        }
        DocumentHold document(new LogDocument(std::move(log.file), "Package", "benchmark", log.path, options));
        if (sinks != Sinks::Log) {
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
    // The size of the records so far.
    std::size_t RecordedBytes() const
    {
        const std::string content = Content(recording.path);
        std::size_t at = 0;
        recording::RecordReader records([&](char* bytes, std::size_t count) {
            count = content.copy(bytes, count, at);
            at += count;
            return count;
        });
        while (records.Next()) {
        }
        return static_cast<std::size_t>(records.Offset());
    }

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
