#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>

#include <curl/curl.h>

// What handles of libcurl cost over HTTPS: tls_bench URL BUNDLE COUNT. Fetches the file COUNT times
// in each of four ways and prints the microseconds of each transfer: with a fresh handle or with
// one that is kept and reset, and with the server's certificate looked for in BUNDLE or not at all.

namespace {

std::size_t discard(char* /*data*/, std::size_t size, std::size_t count, void* /*target*/) {
    return size * count;
}

struct Way {
    const char* word;
    bool isKept;
    bool isVerified;
};

constexpr Way ways[] = {{"fresh_us", false, false},
                        {"kept_us", true, false},
                        {"fresh_verified_us", false, true},
                        {"kept_verified_us", true, true}};

void transfer(CURL* handle, const Way& way, const std::string& url, const std::string& bundle) {
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(handle, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(handle, CURLOPT_CAINFO, bundle.c_str());
    curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, way.isVerified ? 1L : 0L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &discard);
    if (const CURLcode code = curl_easy_perform(handle); code != CURLE_OK) {
        std::cerr << "tls_bench: " << url << ": " << curl_easy_strerror(code) << '\n';
        std::exit(1);
    }
}

} // namespace

int main(int argc, char** argv) {
    using Clock = std::chrono::steady_clock;
    if (argc != 4) {
        std::cerr << "tls_bench: URL BUNDLE COUNT\n";
        return 2;
    }
    curl_global_init(CURL_GLOBAL_DEFAULT);
    for (const Way& way : ways) {
        CURL* kept = curl_easy_init();
        transfer(kept, way, argv[1], argv[2]); // the first one parses in any case
        for (long left = std::strtol(argv[3], nullptr, 10); left > 0; --left) {
            const Clock::time_point begin = Clock::now();
            CURL* const handle = way.isKept ? kept : curl_easy_init();
            transfer(handle, way, argv[1], argv[2]);
            if (way.isKept) {
                curl_easy_reset(handle);
            } else {
                curl_easy_cleanup(handle);
            }
            const std::chrono::duration<double, std::micro> taken = Clock::now() - begin;
            std::cout << way.word << ' ' << taken.count() << '\n';
        }
        curl_easy_cleanup(kept);
    }
    return 0;
}
