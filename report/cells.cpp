#include "report/cells.h"

#include <utility>

namespace cells {

void row_text::grow(std::size_t count) {
    // Doubling keeps a long hex cell from growing the row many times.
    std::size_t capacity = capacity_ * 2;
    if (capacity - used_ < count) capacity = used_ + count;
    std::unique_ptr<char[]> data(new char[capacity]);
    std::memcpy(data.get(), data_.get(), used_);
    data_ = std::move(data);
    capacity_ = capacity;
}

}  // namespace cells
