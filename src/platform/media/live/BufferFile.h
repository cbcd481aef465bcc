// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDescriptor.h"
#include "platform/media/live/BufferPolicy.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// The files in which libmpv keeps what it has received. libmpv makes them in a folder of this
/// object's own, unlinks them at once, and only ever appends: what is old is cut out of them here,
/// as holes. Its functions wait for the disk, so a player calls them on a worker thread, one at a
/// time. A disk that cannot do it is reported as one without room.
class BufferFile {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Makes a folder inside this one.
    explicit BufferFile(std::string parent);
    ~BufferFile();
    BufferFile(const BufferFile&) = delete;
    BufferFile& operator=(const BufferFile&) = delete;

    [[nodiscard]] const std::string& folder() const { return m_folder; }

    /// Makes the folder, and removes those that programs without an end have left. Returns nullopt
    /// if no buffer can be kept there.
    [[nodiscard]] std::optional<BufferPolicy::Disk> prepare();
    /// Cuts out what has arrived before the time given. To be called every few seconds, as what
    /// arrives between two calls is cut out together.
    [[nodiscard]] BufferPolicy::Disk cutBefore(TimePoint time, TimePoint now);

private:
    struct Mark {
        TimePoint at;
        std::int64_t size;
    };
    struct File {
        FileDescriptor descriptor;
        std::uint64_t inode;
        /// How long the file was at some times, the earliest first.
        std::deque<Mark> marks;
    };

    /// Takes the files that libmpv has opened since the last time.
    void findFiles();
    static void cut(File& file, TimePoint before, TimePoint now);
    [[nodiscard]] BufferPolicy::Disk disk() const;

    std::string m_parent;
    std::string m_folder;
    std::vector<File> m_files;
};

} // namespace orvane
