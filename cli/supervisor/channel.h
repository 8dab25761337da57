// Messages from a worker to its supervisor, through a pipe.
#pragma once

#include <functional>
#include <mutex>
#include <string>

namespace ombrix::cli {

enum class MessageKind : char {
    Note = 'n',
    Stage = 's',
    Text = 't',  ///< for standard output
    UsageError = 'u',
    WorkError = 'w',
    OutOfMemory = 'm',
    Done = 'd',
};

/// The worker's end.
class MessageWriter {
  public:
    explicit MessageWriter(int descriptor) : descriptor_(descriptor) {}
    /// By any thread. Ends the process when nobody listens.
    void Send(MessageKind kind, const std::string& text = {});

  private:
    const int descriptor_;
    std::mutex mutex_;
};

/// The supervisor's end.
class MessageReader {
  public:
    using Take = std::function<void(MessageKind kind, const std::string& text)>;

    explicit MessageReader(int descriptor) : descriptor_(descriptor) {}
    /// Waits for bytes, and hands over each message that is whole. False at the end.
    bool Read(const Take& take);

  private:
    const int descriptor_;
    std::string received_;
};

}  // namespace ombrix::cli
