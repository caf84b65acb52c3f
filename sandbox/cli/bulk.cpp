#include "sandbox/cli/bulk.h"

#include <stdexcept>

namespace sandbox {
namespace {

constexpr std::size_t filesInFolder = 50;
constexpr std::size_t sizeStride = 7919;  // a prime: sizes come in no order
constexpr std::size_t cabinetStride = 37; // and so do cabinets

std::string numbered(const char* prefix, std::size_t number) {
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
    return prefix + digits;
}

} // namespace

void appendBulk(const nlohmann::json& rule, std::vector<MaterialPlan>& materials) {
    const auto count = rule.at("count").get<std::size_t>();
    const auto smallest = rule.at("minSize").get<std::size_t>();
    const auto largest = rule.at("maxSize").get<std::size_t>();
    const auto cabinets = rule.at("cabinets").get<std::size_t>();
    const auto methods = rule.at("methods").get<std::vector<std::string>>();
    if (largest < smallest || methods.empty()) {
        throw std::runtime_error("bulk: \"maxSize\" is below \"minSize\", or \"methods\" is empty");
    }
    for (std::size_t i = 0; i < count; ++i) {
        MaterialPlan material;
        material.name = numbered("b", i);
        material.module = "/bulk";
        material.version = rule.at("version").get<std::string>();
        material.path = numbered("bulk/", i / filesInFolder) + "/" + numbered("file", i) + ".dat";
        material.file.size = smallest + i * sizeStride * 64 % (largest - smallest + 1);
        if (i * cabinetStride % 100 < cabinets) {
            material.method = methods[i % methods.size()];
        }
        materials.push_back(std::move(material));
    }
}

} // namespace sandbox
