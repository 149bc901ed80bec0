// SPDX-License-Identifier: MIT
#include "platform/Processors.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sched.h>
#include <string>

namespace platform {

namespace {

unsigned AllowedProcessors() {
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0)
        return 1; // more than the set holds, or none that can be told
    return static_cast<unsigned>(std::max(1, CPU_COUNT(&allowed)));
}

// The first line of a small file; empty when there is none.
std::string FirstLine(const std::string& path) {
    char line[4096] = "";
    if (std::FILE* const file = std::fopen(path.c_str(), "re")) {
        if (std::fgets(line, sizeof line, file) == nullptr)
            line[0] = '\0';
        std::fclose(file);
    }
    line[std::strcspn(line, "\n")] = '\0';
    return line;
}

// The processors' time that a control group of the second version grants: "max 100000", or microseconds in a period.
unsigned GrantedProcessors(const std::string& group, unsigned most) {
    const std::string limit = FirstLine("/sys/fs/cgroup" + group + "/cpu.max");
    char* rest = nullptr;
    const double quota = std::strtod(limit.c_str(), &rest);
    if (rest == limit.c_str())
        return most;
    const double period = std::strtod(rest, nullptr);
    if (quota <= 0 || period <= 0 || quota / period >= most)
        return most;
    return std::max(1u, static_cast<unsigned>(std::lround(quota / period)));
}

} // namespace

// The limits of all groups around the process hold: "0::/outer/inner".
unsigned UsableProcessors() {
    unsigned count = AllowedProcessors();
    std::string group = FirstLine("/proc/self/cgroup");
    group.erase(0, std::min(group.size(), std::size_t{3}));
    for (;;) {
        count = GrantedProcessors(group, count);
        const std::size_t parent = group.rfind('/');
        if (parent == std::string::npos || group.empty())
            return count;
        group.resize(parent);
    }
}

} // namespace platform
