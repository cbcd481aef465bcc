// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/live/BufferFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <filesystem>
#include <map>
#include <system_error>

namespace orvane {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view namePrefix{"live-"};
constexpr const char* descriptors = "/proc/self/fd";
constexpr std::int64_t block = 4096;

std::string uniqueName() {
    static std::atomic<unsigned> count = 0;
    return std::string(namePrefix) + std::to_string(getpid()) + '-' + std::to_string(++count);
}

/// Whether the folder was made by a process that does not exist any more.
bool isLeftOver(const fs::path& folder) {
    const std::string name = folder.filename();
    if (!name.starts_with(namePrefix))
        return false;
    const std::string_view digits = std::string_view(name).substr(namePrefix.size());
    pid_t process = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), process);
    std::error_code ignored;
    return error == std::errc() && !fs::exists("/proc/" + std::to_string(process), ignored);
}

void removeLeftOvers(const std::string& parent) {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(parent, ignored)) {
        if (isLeftOver(entry.path()))
            fs::remove_all(entry.path(), ignored);
    }
}

bool cutHole(int descriptor, std::int64_t begin, std::int64_t end) {
    return end <= begin || fallocate(descriptor, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, begin,
                                     end - begin) == 0;
}

/// Not every file system can cut holes.
bool canCut(const std::string& folder) {
    std::string path = folder + "/trial-XXXXXX";
    const FileDescriptor file(mkostemp(path.data(), O_CLOEXEC));
    if (!file.isOpen())
        return false;
    unlink(path.c_str());
    return ftruncate(file.get(), 2 * block) == 0 && cutHole(file.get(), 0, block);
}

std::optional<struct stat> statusOf(int descriptor) {
    struct stat status{};
    return fstat(descriptor, &status) == 0 ? std::optional(status) : std::nullopt;
}

bool lies(const fs::path& link, const std::string& folder) {
    std::error_code error;
    return fs::read_symlink(link, error).string().starts_with(folder + '/');
}

} // namespace

BufferFile::BufferFile(std::string parent)
    : m_parent(std::move(parent)), m_folder(m_parent + '/' + uniqueName()) {}

BufferFile::~BufferFile() {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

std::optional<BufferPolicy::Disk> BufferFile::prepare() {
    std::error_code error;
    removeLeftOvers(m_parent);
    fs::create_directories(m_folder, error);
    if (error || !canCut(m_folder))
        return std::nullopt;
    return disk();
}

BufferPolicy::Disk BufferFile::cutBefore(TimePoint time, TimePoint now) {
    findFiles();
    for (File& file : m_files)
        cut(file, time, now);
    return disk();
}

void BufferFile::findFiles() {
    std::map<std::uint64_t, int> descriptorsOf;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(descriptors, ignored)) {
        if (!lies(entry.path(), m_folder))
            continue;
        FileDescriptor descriptor(open(entry.path().c_str(), O_RDWR | O_CLOEXEC));
        // The number may belong to another file by now.
        const std::string own = std::string(descriptors) + '/' + std::to_string(descriptor.get());
        const std::optional<struct stat> status = statusOf(descriptor.get());
        if (!status || !lies(own, m_folder))
            continue;
        ++descriptorsOf[status->st_ino];
        if (std::ranges::find(m_files, status->st_ino, &File::inode) == m_files.end()) {
            ++descriptorsOf[status->st_ino];
            m_files.push_back(
                {.descriptor = std::move(descriptor), .inode = status->st_ino, .marks = {}});
        }
    }
    // One that libmpv has closed would keep its place on the disk.
    std::erase_if(m_files, [&](const File& file) { return descriptorsOf[file.inode] < 2; });
}

void BufferFile::cut(File& file, TimePoint before, TimePoint now) {
    const std::optional<struct stat> status = statusOf(file.descriptor.get());
    if (!status)
        return;
    file.marks.push_back({.at = now, .size = status->st_size});
    std::int64_t end = 0;
    while (file.marks.front().at <= before && file.marks.size() > 1) {
        end = file.marks.front().size / block * block;
        file.marks.pop_front();
    }
    // From the beginning: the file system skips what is a hole already.
    static_cast<void>(cutHole(file.descriptor.get(), 0, end));
}

BufferPolicy::Disk BufferFile::disk() const {
    constexpr std::int64_t unit = 512; // Of `st_blocks`, whatever the file system.
    BufferPolicy::Disk result;
    for (const File& file : m_files) {
        if (const std::optional<struct stat> status = statusOf(file.descriptor.get()))
            result.used += status->st_blocks * unit;
    }
    struct statvfs system{};
    if (statvfs(m_folder.c_str(), &system) == 0)
        result.free = std::int64_t(system.f_bavail) * std::int64_t(system.f_frsize);
    return result;
}

} // namespace orvane
