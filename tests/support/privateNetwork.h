// Two network namespaces with a cable between them, for links that break: the server side, in which
// the test and its children live meanwhile, and a far side. Both vanish with the object; the host's
// own network is not touched. Made by the main thread, for /proc/net is that thread's.
#pragma once

#include "tests/support/tcp.h"

#include <string>

namespace ied::test {

struct PrivateNetwork {
    PrivateNetwork();
    PrivateNetwork(const PrivateNetwork &) = delete;
    PrivateNetwork &operator=(const PrivateNetwork &) = delete;
    ~PrivateNetwork(); // back into the host's network
    std::string fault; // why the host permits none, or ""

    // Connects from the far side; false if nothing answers there.
    bool connectFromAfar(RawClient &client, std::uint16_t port);
    // The far end of the cable goes down: from now on no segment passes either way, and no FIN or RST
    // tells of it.
    bool cut();

  private:
    int host = -1;
    int near = -1;
    int far = -1;
};

} // namespace ied::test
