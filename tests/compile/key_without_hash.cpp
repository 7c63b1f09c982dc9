// A table over a key type without a hash must not compile, and the compiler must say what is
// missing.

#include "quill/utils/hash_map.h"

struct Point {
  int x = 0;
  int y = 0;
  bool operator==(const Point&) const = default;
};

quill::hsh::HashMap<Point, int> distances;
