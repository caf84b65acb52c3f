#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include <curl/curl.h>
#include <mspack.h>
#include <openssl/evp.h>

// What one would write in place of the plug-in: each file fetched with a handle of its own, its
// MD5 taken, a cabinet expanded and the MD5 of what came out taken, and moved. Nothing else.
//
//   bare_loop LIST STORAGE FOLDER
//
// LIST has a line a file: id, MD5, MD5 of the file, "cab" or "plain", path.

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& what) {
    std::cerr << "bare_loop: " << what << '\n';
    std::exit(1);
}

std::size_t writeBody(char* data, std::size_t size, std::size_t count, void* file) {
    return std::fwrite(data, size, count, static_cast<std::FILE*>(file));
}

void fetch(const std::string& url, const fs::path& target) {
    std::FILE* const file = std::fopen(target.c_str(), "wb");
    CURL* const handle = curl_easy_init();
    if (!file) {
        fail(target.string() + " cannot be written");
    }
    if (!handle) {
        fail("libcurl gives no handle");
    }
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 0L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &writeBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, file);
    if (curl_easy_perform(handle) != CURLE_OK) {
        fail(url + " cannot be fetched");
    }
    curl_easy_cleanup(handle);
    static_cast<void>(std::fclose(file));
}

std::string md5Of(const fs::path& path) {
    constexpr std::size_t blockSize = 65536;
    alignas(4096) static char block[blockSize];
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (!file) {
        fail(path.string() + " is not there");
    }
    static_cast<void>(std::setvbuf(file, nullptr, _IONBF, 0));
    EVP_MD_CTX* const context = EVP_MD_CTX_new();
    EVP_DigestInit_ex(context, EVP_md5(), nullptr);
    while (const std::size_t size = std::fread(block, 1, blockSize, file)) {
        EVP_DigestUpdate(context, block, size);
    }
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    EVP_DigestFinal_ex(context, digest, &size);
    EVP_MD_CTX_free(context);
    static_cast<void>(std::fclose(file));
    std::string text;
    for (unsigned int i = 0; i < size; ++i) {
        text += "0123456789abcdef"[digest[i] >> 4];
        text += "0123456789abcdef"[digest[i] & 15];
    }
    return text;
}

/// The one member of a cabinet.
void expand(const fs::path& cabinet, const fs::path& target) {
    mscab_decompressor* const decompressor = mspack_create_cab_decompressor(nullptr);
    mscabd_cabinet* const open = decompressor->open(decompressor, cabinet.c_str());
    if (!open || decompressor->extract(decompressor, open->files, target.c_str()) != 0) {
        fail(cabinet.string() + " cannot be expanded");
    }
    decompressor->close(decompressor, open);
    mspack_destroy_cab_decompressor(decompressor);
}

void require(const fs::path& file, const std::string& md5) {
    if (md5Of(file) != md5) {
        fail(file.string() + " has another MD5");
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        fail("LIST STORAGE FOLDER");
    }
    curl_global_init(CURL_GLOBAL_DEFAULT);
    const fs::path folder = argv[3];
    std::ifstream list(argv[1]);
    std::string id;
    std::string md5;
    std::string fileMd5;
    std::string kind;
    std::string path;
    while (list >> id >> md5 >> fileMd5 >> kind >> path) {
        const fs::path stored = folder / md5;
        fetch(argv[2] + ('/' + id), stored);
        require(stored, md5);
        fs::path whole = stored;
        if (kind == "cab") {
            whole = folder / fileMd5;
            expand(stored, whole);
            fs::remove(stored);
            require(whole, fileMd5);
        }
        const fs::path target = folder / path;
        fs::create_directories(target.parent_path());
        fs::rename(whole, target);
    }
    return 0;
}
