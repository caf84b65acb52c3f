#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>

#include <httplib.h>

#include "bench/offer.h"

// The update platform and the storage of a measurement, on loopback.
//
//   bench_server FOLDER COUNT DIVISOR
//
// Makes the materials in FOLDER (see offer.h), prints its address and serves until its input
// ends. It judges nothing and keeps its answers ready: a client is measured, not a server.

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "bench_server: FOLDER COUNT DIVISOR\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const auto materials = bench::makeMaterials(folder, std::strtoul(argv[2], nullptr, 10),
                                                std::strtoul(argv[3], nullptr, 10));
    httplib::Server server;
    server.set_tcp_nodelay(true); // else the body waits for the header's receipt
    const int port = server.bind_to_any_port("127.0.0.1");
    if (port < 0) {
        std::cerr << "bench_server: no port is free\n";
        return 1;
    }
    const std::string address = "http://127.0.0.1:" + std::to_string(port);
    const std::string rows = bench::materialAnswer(materials);
    server.set_mount_point("/storage", (folder / "storage").string());
    server.Post("/MaterialV2/BatchGetMaterialMeta",
                [&](const httplib::Request&, httplib::Response& response) {
                    response.set_content(rows, "application/json");
                });
    server.Post("/.*", [&](const httplib::Request& request, httplib::Response& response) {
        response.set_content(bench::otherAnswer(request.path, materials, address + "/storage"),
                             "application/json");
    });
    std::cout << address << ' ' << rows.size() << std::endl;
    std::thread([&server] {
        while (std::getchar() != EOF) {
        }
        server.stop();
    }).detach();
    server.listen_after_bind();
    return 0;
}
