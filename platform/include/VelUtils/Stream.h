/// @file
/// Handles on byte streams: files that are replaced as a whole or not at all, and memory.
#pragma once

#include "VelPlatform/String.h"
#include "VelPlatform/VelApi.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace VelUtils
{

using VelPlatform::VelString;

/// A handle on a stream of bytes that is read or written from the beginning to the end.
///
/// Copies of a handle share one stream: its position, its end, its failure. Closing it, or the end of the last handle,
/// makes what was written last. A stream whose handle is destroyed while an exception passes is given up instead, and
/// so is one into which nothing was written and that nobody closed.
///
/// That an exception passes is known from the language runtime of this library. On Windows a module that is linked with
/// a runtime of its own keeps its exceptions to itself: hosts whose handles are to be given up share the runtime.
///
/// Threads: a stream and all its handles belong to one thread at a time.
class VEL_API Stream
{
public:
    /// What a kind of stream does. It is used by one Stream and its copies, never after a failure.
    ///
    /// Destroying a device whose Commit was not called gives up what was written to it.
    class VEL_API Device
    {
    public:
        virtual ~Device();
        /// Reads up to `size` bytes into `target` and says in `read` how many came; none is the end. False: it failed.
        virtual bool Read(void* target, std::size_t size, std::size_t& read) = 0;
        /// Takes all of the bytes; false when one of them is refused.
        virtual bool Write(const void* source, std::size_t size) = 0;
        /// Makes last what was written; false when it may be lost. Called once at most, and last.
        virtual bool Commit() = 0;
    };

    /// A handle on nothing.
    Stream() noexcept;
    /// A stream on a device, which it owns; on nothing when the device is null.
    explicit Stream(std::unique_ptr<Device> device);
    /// Another handle on the same stream.
    Stream(const Stream& other) noexcept;
    /// Takes the handle; `other` is one on nothing then.
    Stream(Stream&& other) noexcept;
    ~Stream();
    /// Lets the own stream go and becomes another handle on that of `other`.
    Stream& operator=(const Stream& other) noexcept;
    /// Lets the own stream go and takes the handle; `other` is one on nothing then.
    Stream& operator=(Stream&& other) noexcept;

    /// Whether there is an open stream that has not failed.
    explicit operator bool() const noexcept;

    /// Reads up to `size` bytes and gives the number of those read; fewer only at the end of the stream or when it
    /// failed (see Failed).
    std::size_t Read(void* target, std::size_t size);

    /// Takes bytes; false as soon as one of them is refused, and the whole stream is given up then. Bytes may wait in a
    /// buffer, so that a full disk is noticed by a later Write, or by Close.
    bool Write(const void* source, std::size_t size);

    /// Makes last what was written and closes the stream for all its handles.
    /// @return true when all of it is safe; false when it is not, and then the stream was given up: a file is as it
    /// was.
    ///         The one exception is a disk that fails after the new file has its place, so that it may be lost with the
    ///         power. Asked again, it answers the same. A handle on nothing gives false.
    bool Close();

    /// Gives up what was written, for all handles: a file is as it was. Does nothing to a closed stream.
    void GiveUp() noexcept;

    /// Whether the stream was given up or failed: in a read, a write, the closing. Its end is no failure.
    bool Failed() const noexcept;

private:
    struct State;

    void Release() noexcept;

    std::shared_ptr<State> m_state;
    int m_exceptionsPassing; // when this handle got its stream
};

/// Streams on files.
class VEL_API FileStream
{
public:
    FileStream() = delete;

    /// Writes a file. It takes its place under `path` only when it is whole, flushed to the disk and closed; until
    /// then, and after a crash or a failure, what was there is as it was.
    ///
    /// The bytes wait in a file beside the target, named like it with ".saving~" and a digit behind. After a crash it
    /// stays, and the next save to the same path removes it; that of another living writer is left alone (of two
    /// writers the one closing last wins). A symbolic link stays one, its target is replaced. The access mode is kept;
    /// the owner is who writes, and other hard links keep the old contents.
    ///
    /// @return a handle on nothing when the path cannot be written: no such folder, no permission, not a plain file, a
    ///         text that names no path. On Windows the system refuses to replace a file that somebody else has open:
    ///         closing gives false then, and the file is as it was.
    static Stream Create(const VelString& path);

    /// Reads a file; a handle on nothing when there is none to be read.
    static Stream Open(const VelString& path);
};

/// A stream in memory: a handle on it and on its bytes, which live as long as one of the handles.
///
/// Reading begins at the first byte, writing appends. Handed on as a Stream it stays the same stream.
class VEL_API MemoryStream : public Stream
{
public:
    /// Empty, to be written to.
    MemoryStream();
    /// Holding a copy of these bytes, to be read.
    explicit MemoryStream(std::string_view bytes);

    /// What has been written or given; also after the stream was closed.
    const std::string& GetBytes() const noexcept;

private:
    explicit MemoryStream(std::shared_ptr<std::string> bytes);

    std::shared_ptr<std::string> m_bytes;
};

} // namespace VelUtils
