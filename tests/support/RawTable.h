// Calls an operation of an interface by its place in the table, as a host or a
// sibling module does that knows the order alone.
//
//   const RawTable table(static_cast<I_CUTime*>(&time));
//   EXPECT_EQ(table.Call<uint16_t>(0), 2024);           // GetYear
//   EXPECT_EQ(table.Call<int32_t>(5, index, &value, nullptr), 1);
//
// Arguments must have exactly the types of the operation: spell out casts such
// as uint32_t{5} and static_cast<I_Thing*>(thing). Pass the interface pointer
// itself, not the object behind it: an object has one table for each base.
#pragma once

#include <cstddef>
#include <type_traits>

namespace velora::test {

class RawTable {
 public:
  template <typename Interface>
  explicit RawTable(Interface* object) : object_(object) {
    static_assert(std::is_polymorphic_v<Interface>);
  }

  /// Calls the operation at the raw slot. A virtual destructor takes two slots:
  /// the second destroys and frees the object.
  template <typename Answer, typename... Arguments>
  Answer Call(std::size_t slot, Arguments... arguments) const {
    // An operation takes the object as its first argument.
    using Operation = Answer (*)(void*, Arguments...);
    return reinterpret_cast<Operation>(Slot(slot))(object_, arguments...);
  }

  /// The address in a slot, for operations that Call cannot make (variadic ones).
  void* Slot(std::size_t slot) const {
    // The table of a polymorphic object is the first thing in it.
    return (*static_cast<void* const* const*>(object_))[slot];
  }

  void* Object() const { return object_; }

 private:
  void* object_;
};

}  // namespace velora::test
