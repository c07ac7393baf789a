// Under qemu the toolkit's QProcess starts nothing: it asks the kernel whether a child can be watched by a
// file descriptor (waitid), is told yes, and then makes it with a flag of clone that qemu refuses. Told no,
// it watches its children by signal. Test programs that run in an emulator link this; it stands before the C
// library's syscall().

#include <cerrno>
#include <cstdarg>

#include <dlfcn.h>
#include <sys/syscall.h>

extern "C" __attribute__((visibility("default"))) long syscall(long number, ...) noexcept
{
    va_list list;
    va_start(list, number);
    long arguments[6];
    for (long &argument : arguments)
        argument = va_arg(list, long);
    va_end(list);

    const long childByDescriptor = 3; // P_PIDFD
    if (number == SYS_waitid && arguments[0] == childByDescriptor) {
        errno = ENOSYS;
        return -1;
    }
    using Syscall = long (*)(long, ...);
    static const auto next = reinterpret_cast<Syscall>(dlsym(RTLD_NEXT, "syscall"));
    return next(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]);
}
