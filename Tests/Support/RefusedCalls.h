#pragma once

#include <cerrno>
#include <cstddef>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace Support
{
/// Lets the system refuse to read symbolic links, with "permission denied", from now on: for a child process, as it
/// cannot be taken back. Needs no rights. False if the system does not offer that.
inline bool RefuseToReadLinks()
{
    sock_filter program[] = {
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
#ifdef SYS_readlink
        {BPF_JMP | BPF_JEQ | BPF_K, 1, 0, SYS_readlink},
#endif
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_readlinkat},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EACCES},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog filter{std::size(program), program};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}
} // namespace Support
