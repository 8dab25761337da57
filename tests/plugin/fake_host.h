// A host that does as it is told: it can lack services, refuse locks, describe buffers wrongly, give other pictures
// than were asked for, fail to start tasks. It stands in for the platform too, so that a test sees every call.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "engine/mp_image_filter.h"
#include "frame/definition_records.h"

namespace ombrix::testing {

/// Bytes that end where an unreadable page begins, so that one byte too far is a crash.
class GuardedBytes {
  public:
    explicit GuardedBytes(std::size_t size);
    ~GuardedBytes();
    GuardedBytes(const GuardedBytes&) = delete;
    GuardedBytes& operator=(const GuardedBytes&) = delete;
    std::uint8_t* data() const { return data_; }
    std::size_t size() const { return size_; }

  private:
    std::size_t size_;
    std::size_t mapped_;
    std::uint8_t* mapping_;
    std::uint8_t* data_;
};

/// A picture of the fake host, or a point. Its address is its handle, and that of its bitmap context.
struct FakePicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bits = 0;
    std::size_t rowBytes = 0;
    std::unique_ptr<GuardedBytes> bytes;  ///< to the last row's last pixel
    std::string name;
    FakePicture* mask = nullptr;
    int references = 1;
    int locks = 0;

    bool refusesLock = false;
    bool isDrawing = false;  ///< of a kind that is not a bitmap
    bool hidesBase = false;  ///< describes a null base address

    std::int64_t x = 0;  ///< of a point
    std::int64_t y = 0;
    std::string unreadable;  ///< the coordinates, "x", "y" or "xy", that the host will not tell

    std::uint8_t* Pixel(int x, int y) const {
        return bytes->data() + static_cast<std::size_t>(y) * rowBytes + static_cast<std::size_t>(x * bits / 8);
    }
    REALobjectStruct* Handle() { return reinterpret_cast<REALobjectStruct*>(this); }
};

/// An effect object of the fake host, made from its registered record.
class FakeEffect {
  public:
    explicit FakeEffect(const char* className);
    ~FakeEffect();

    REALobjectStruct* Handle() { return reinterpret_cast<REALobjectStruct*>(memory_.data()); }
    MPImageFilterData& Base();
    void* Data() { return memory_.data() + record_->dataOffset; }
    /// A function of the method table, by row.
    template <class Function>
    Function* Method(int row) const {
        return reinterpret_cast<Function*>(record_->methods[row].function);
    }

  private:
    REALclassDefinition* record_;
    std::vector<std::uint8_t> memory_;
};

/// The one fake host; a test makes one and, mostly, starts the plug-in on it.
class FakeHost {
  public:
    FakeHost();
    ~FakeHost();

    /// Calls the plug-in's entry.
    void Start();

    /// A picture that the host's program holds one reference to. Bytes are a pattern that differs everywhere.
    FakePicture* NewPicture(std::string name, int width, int height, int bits, int rowPadding = 0);
    FakePicture* NewPoint(std::int64_t x, std::int64_t y);
    /// Handle of an object whose OnProgress records what is reported.
    REALobjectStruct* ProgressHandler();

    double version = 2024.0;
    std::set<std::string> missing;  ///< services and methods (by declaration) that the host does not have
    int rowPadding = 0;             ///< of pictures that the plug-in makes
    bool refusesInstances = false;
    bool refusesDestinationLock = false;
    bool hasNoGraphics = false;
    std::int32_t destinationWidthError = 0;  ///< added to the width that the plug-in asks for
    std::int32_t destinationBits = 0;        ///< instead of the depth that it asks for

    unsigned long processors = 16;
    int failQueues = 0;            ///< as many MPCreateQueue fail
    std::set<int> failTasks;       ///< the tasks (from 0, in order of starting) that cannot be started
    int failWaits = 0;             ///< as many waits fail at once
    std::int32_t waitStatus = -1;  ///< with this status

    std::vector<std::string> asked;       ///< names that the resolver was asked for
    std::vector<std::string> registered;  ///< "module X", "class Y", in order
    std::map<std::string, REALclassDefinition*> classes;
    std::map<std::string, REALmoduleDefinition*> modules;
    std::vector<std::string> log;  ///< "lock source", "unlock source", "release result"
    std::vector<std::pair<std::int64_t, std::int64_t>> reports;
    int announcedVersion = 0;
    int tasksStarted = 0;
    int queuesAlive = 0;

    /// Pictures made by the plug-in (name "result") that are still referenced.
    int LiveResults() const;
    int Locks() const;

    std::vector<std::unique_ptr<FakePicture>> pictures;
};

}  // namespace ombrix::testing
