// The base64 encoder against OpenSSL's.
#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <string>
#include <vector>

#include "Ratio.h"
#include "SampleText.h"
#include "net/Base64.h"

int main() {
  std::vector<bench::Comparison> comparisons;
  for (const std::size_t size : {4 << 10, 64 << 10, 1 << 20, 64 << 20}) {
    const std::string bytes = bench::SavedXml(size);
    const auto ours = [bytes] { benchmark::DoNotOptimize(Base64Encode(bytes)); };
    const auto rival = [bytes] {
      std::string text((bytes.size() + 2) / 3 * 4, '\0');
      EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                      reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
      benchmark::DoNotOptimize(text);
    };
    comparisons.push_back({"Base64Encode : OpenSSL", size, ours, rival, 1.6});
  }
  return bench::Compare(comparisons);
}
