// A host, and a platform, that can be told to fail in many ways.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "sdk/definition_records.h"
#include "sdk/mp_image_filter.h"

namespace ombrix::testing {

/// Bytes that end at an unreadable page, so that one byte too far is a crash.
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

/// A picture or a point. Its address is its handle and that of its bitmap context.
struct FakePicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bits = 0;
    std::size_t rowBytes = 0;
    std::unique_ptr<GuardedBytes> bytes;  ///< up to the last row's last pixel
    std::string name;
    FakePicture* mask = nullptr;
    int references = 1;
    int locks = 0;

    bool refusesLock = false;
    bool isDrawing = false;  ///< not a bitmap
    bool hidesBase = false;  ///< has a null base address

    std::int64_t x = 0;  ///< of a point
    std::int64_t y = 0;
    std::string unreadable;  ///< coordinates that cannot be read: "x", "y" or "xy"

    std::uint8_t* Pixel(int x, int y) const {
        return bytes->data() + static_cast<std::size_t>(y) * rowBytes + static_cast<std::size_t>(x * bits / 8);
    }
    REALobjectStruct* Handle() { return reinterpret_cast<REALobjectStruct*>(this); }
};

/// An effect object, made from its registered record.
class FakeEffect {
  public:
    explicit FakeEffect(const char* className);
    ~FakeEffect();

    REALobjectStruct* Handle() { return reinterpret_cast<REALobjectStruct*>(memory_.data()); }
    MPImageFilterData& Base();
    void* Data() { return memory_.data() + record_->dataOffset; }
    /// The function in a row of the method table.
    template <class Function>
    Function* Method(int row) const {
        return reinterpret_cast<Function*>(record_->methods[row].function);
    }

  private:
    REALclassDefinition* record_;
    std::vector<std::uint8_t> memory_;
};

/// There is one at a time.
class FakeHost {
  public:
    FakeHost();
    ~FakeHost();

    /// Starts the plug-in.
    void Start();

    /// A picture with one reference. Its bytes are a pattern.
    FakePicture* NewPicture(std::string name, int width, int height, int bits, int rowPadding = 0);
    FakePicture* NewPoint(std::int64_t x, std::int64_t y);
    /// Its OnProgress fills `reports`.
    REALobjectStruct* ProgressHandler();

    double version = 2024.0;
    std::set<std::string> missing;  ///< services, and methods by declaration
    int rowPadding = 0;             ///< of new pictures
    bool refusesInstances = false;
    bool refusesDestinationLock = false;
    bool hasNoGraphics = false;
    std::int32_t destinationWidthError = 0;  ///< added to the width asked for
    std::int32_t destinationBits = 0;        ///< instead of the depth asked for

    unsigned long processors = 16;
    int failQueues = 0;            ///< so many calls of MPCreateQueue fail
    std::set<int> failTasks;       ///< tasks that cannot be started, counted from 0
    int failWaits = 0;             ///< so many waits fail
    std::int32_t waitStatus = -1;  ///< with this status

    std::vector<std::string> asked;       ///< services and methods looked up
    std::vector<std::string> registered;  ///< "module X", "class Y", in order
    std::map<std::string, REALclassDefinition*> classes;
    std::map<std::string, REALmoduleDefinition*> modules;
    std::vector<std::string> log;  ///< "lock source", "unlock source", "release result"
    std::vector<std::pair<std::int64_t, std::int64_t>> reports;
    int announcedVersion = 0;
    int tasksStarted = 0;
    int queuesAlive = 0;

    /// Pictures made by the plug-in that still have references.
    int LiveResults() const;
    int Locks() const;

    std::vector<std::unique_ptr<FakePicture>> pictures;
};

}  // namespace ombrix::testing
