#include <exception>
#include <iterator>
#include <memory>
#include <new>

#include "host/own_classes.h"
#include "host/serve.h"

namespace ombrix::host {
namespace {

void Construct(REALobjectStruct* handler) { new (&ProgressHandlerOf(handler)) ProgressHandlerData; }

void Destruct(REALobjectStruct* handler) { std::destroy_at(&ProgressHandlerOf(handler)); }

void OnProgress(REALobjectStruct* handler, std::int64_t value, std::int64_t total) {
    constexpr char kService[] = "ProgressHandler.OnProgress";
    Serve<void>(kService, [&](HostState& host) {
        if (host.Passed(handler, kService, kProgressHandlerClass) == nullptr) return;
        // A copy: the report may release the handler.
        const auto report = ProgressHandlerOf(handler).report;
        // The call cannot be stopped, but after an exception nobody wants its progress.
        if (!report || host.watch.HasKeptException()) return;
        try {
            report(value, total);
        } catch (...) {
            host.watch.KeepException(std::current_exception());
        }
    });
}

const REALmethodDefinition kMethods[] = {
    MethodRow(reinterpret_cast<REALproc>(&OnProgress), "OnProgress(value as Integer,total as Integer)"),
};

REALclassDefinition progressHandlerDefinition = MakeDefinition({
    .name = kProgressHandlerClass,
    .dataSize = sizeof(ProgressHandlerData),
    .constructor = Construct,
    .destructor = Destruct,
    .methods = kMethods,
    .interfaces = kProgressInterface.data(),
});

}  // namespace

REALclassDefinition& ProgressHandlerDefinition() { return progressHandlerDefinition; }

ProgressHandlerData& ProgressHandlerOf(REALobjectStruct* handler) {
    return *static_cast<ProgressHandlerData*>(ClassData(handler, progressHandlerDefinition));
}

}  // namespace ombrix::host
