#include "platform/system/FileCopy.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace pluvarine {

namespace {

constexpr std::size_t kBufferSize = 1 << 20;

bool kernelCopyUnsupported(int error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP ||
           error == EBADF || error == ETXTBSY;
}

// copy_file_range does not say which side failed; these errors can only come from writing.
bool isWriteError(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

void fail(CopyResult& result, CopyResult::Failure failure) {
    result.failure = failure;
    result.errorText = std::strerror(errno);
}

void copyThroughBuffer(int from, std::int64_t fromOffset, int to, std::int64_t toOffset,
                       std::int64_t count, CopyResult& result) {
    const std::unique_ptr<char[]> buffer(new char[kBufferSize]);
    while (result.bytes < count) {
        const auto want =
            static_cast<std::size_t>(std::min<std::int64_t>(count - result.bytes, kBufferSize));
        const ssize_t got = ::pread(from, buffer.get(), want, fromOffset + result.bytes);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return fail(result, CopyResult::Failure::Read);
        }
        if (got == 0) {
            return;
        }
        for (ssize_t written = 0; written < got;) {
            const ssize_t put =
                ::pwrite(to, buffer.get() + written, static_cast<std::size_t>(got - written),
                         toOffset + result.bytes + written);
            if (put < 0 && errno == EINTR) {
                continue;
            }
            if (put < 0) {
                return fail(result, CopyResult::Failure::Write);
            }
            written += put;
        }
        result.bytes += got;
    }
}

} // namespace

CopyResult copyFileBytes(int from, std::int64_t fromOffset, int to, std::int64_t toOffset,
                         std::int64_t count) {
    CopyResult result;
    while (result.bytes < count) {
        loff_t in = fromOffset + result.bytes;
        loff_t out = toOffset + result.bytes;
        const ssize_t got = ::copy_file_range(from, &in, to, &out,
                                              static_cast<std::size_t>(count - result.bytes), 0);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0 && kernelCopyUnsupported(errno)) {
            copyThroughBuffer(from, fromOffset, to, toOffset, count, result);
            return result;
        }
        if (got < 0) {
            fail(result,
                 isWriteError(errno) ? CopyResult::Failure::Write : CopyResult::Failure::Read);
            return result;
        }
        if (got == 0) {
            break;
        }
        result.bytes += got;
    }
    return result;
}

} // namespace pluvarine
