// File permissions hold for everybody but root: a test of missing permission lives in this scope.
#pragma once

#include <unistd.h>

namespace panelkit::testing {

// Started as root, the process has the rights of an ordinary user as long as the object lives; that user owns
// nothing, so folders that it shall enter must be open to others. Started as an ordinary user, nothing
// changes.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_wasRoot(geteuid() == 0)
    {
        const uid_t nobody = 65534;
        m_holds = !m_wasRoot || seteuid(nobody) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_wasRoot && seteuid(0) != 0)
            _exit(1);
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    // Whether the rights are really gone.
    bool holds() const { return m_holds; }

private:
    bool m_wasRoot;
    bool m_holds;
};

} // namespace panelkit::testing
