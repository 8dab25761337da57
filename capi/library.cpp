// The library, its plug-ins and what they have.
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "capi/memory.h"
#include "capi/session.h"

using namespace ombrix::capi;

const char* ombrix_version() { return OMBRIX_VERSION; }

const char* ombrix_last_error() { return LastError(); }

ombrix_status ombrix_load(const char* plugin) {
    return Guarded([&] {
        const Session session;
        session.Catalogue();
        if (plugin != nullptr) session.Load(plugin);
    });
}

ombrix_status ombrix_catalogue(char** json) {
    return Guarded([&] {
        *Required(json, "json") = nullptr;
        const Session session;
        const std::string text = session.Catalogue().Json();
        *json = static_cast<char*>(NewMemory(text.size() + 1).release());
        std::memcpy(*json, text.c_str(), text.size() + 1);
    });
}

void ombrix_free(void* memory) { GiveBack()(memory); }

ombrix_status ombrix_effect_name(size_t index, const char** name) {
    return Guarded([&] {
        *Required(name, "name") = nullptr;
        const Session session;
        const std::vector<ombrix::catalogue::Effect>& effects = session.Catalogue().Effects();
        // In the turn of one thread. Names given out stay where they are.
        static std::deque<std::string>& names = *new std::deque<std::string>;
        for (std::size_t i = names.size(); i < effects.size(); ++i) names.push_back(effects[i].Name());
        if (index < names.size()) *name = names[index].c_str();
    });
}
