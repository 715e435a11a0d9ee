#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// Random values for property tests on machines for which the library of that name is not packaged: the part
/// of its interface that the tests use, the same words for the same things. A property is tried a hundred
/// times from a fixed seed, with values that grow from small to large. A counterexample is reported as it was
/// found; it is not made smaller.
namespace rc {

namespace detail {

/// The draw under way: its randomness and how large values may become.
struct Draw {
  std::mt19937_64 Random;
  int32_t Size = 0;
  std::map<std::string, int32_t> Classes;

  static Draw*& Current() {
    thread_local Draw* current = nullptr;
    return current;
  }
  [[nodiscard]] static uint64_t Below(uint64_t limit) { return Current()->Random() % limit; }
};

/// A case whose precondition does not hold.
struct Discarded {};

struct Failed : std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline void Require(bool boolHolds, const char* szCondition, const char* szFile, int line) {
  if (boolHolds) return;
  std::ostringstream text;
  text << szFile << ":" << line << ": " << szCondition;
  throw Failed(text.str());
}

}  // namespace detail

template <class T>
class Gen {
 public:
  using Value = T;
  explicit Gen(std::function<T()> draw) : m_Draw(std::move(draw)) {}
  T operator*() const { return m_Draw(); }

 private:
  std::function<T()> m_Draw;
};

namespace gen {

/// From min up to below max.
template <class T>
Gen<T> inRange(T min, T max) {
  return Gen<T>([min, max] {
    const uint64_t width = static_cast<uint64_t>(max) - static_cast<uint64_t>(min);
    return static_cast<T>(static_cast<uint64_t>(min) + detail::Draw::Below(width));
  });
}

template <class T>
struct Arbitrary;

template <class T>
Gen<T> arbitrary() {
  return Gen<T>([] { return Arbitrary<T>::Draw(); });
}

template <class T>
requires std::is_integral_v<T>
struct Arbitrary<T> {
  /// Mostly near zero while sizes are small, from the whole range at the end, and now and then an end of it.
  static T Draw() {
    const uint64_t bits = detail::Draw::Current()->Random();
    if constexpr (std::is_same_v<T, bool>) {
      return (bits & 1) != 0;
    } else {
      if (bits % 50 == 0) return std::numeric_limits<T>::max();
      if (bits % 50 == 1) return std::numeric_limits<T>::min();
      const auto shift = static_cast<uint64_t>(64 - 64 * (detail::Draw::Current()->Size + 1) / 101);
      const auto magnitude = shift >= 64 ? 0 : detail::Draw::Current()->Random() >> shift;
      return static_cast<T>((bits & 1024) != 0 ? ~magnitude : magnitude);
    }
  }
};

template <class Container, class T>
Container Collected(uint64_t count, const Gen<T>& element) {
  Container container;
  for (uint64_t i = 0; i < count; ++i) container.insert(container.end(), *element);
  return container;
}

template <class Container, class T>
Gen<Container> container(Gen<T> element) {
  return Gen<Container>([element] {
    const auto most = static_cast<uint64_t>(detail::Draw::Current()->Size);
    return Collected<Container>(detail::Draw::Below(most + 1), element);
  });
}

template <class Container, class T>
Gen<Container> container(size_t count, Gen<T> element) {
  return Gen<Container>([count, element] { return Collected<Container>(count, element); });
}

template <class T>
struct Arbitrary<std::vector<T>> {
  static std::vector<T> Draw() { return *container<std::vector<T>>(arbitrary<T>()); }
};

template <>
struct Arbitrary<std::string> {
  static std::string Draw() { return *container<std::string>(arbitrary<char>()); }
};

template <class A, class B>
struct Arbitrary<std::pair<A, B>> {
  static std::pair<A, B> Draw() {
    A first = Arbitrary<A>::Draw();
    return {std::move(first), Arbitrary<B>::Draw()};
  }
};

template <class String>
Gen<String> string() {
  return arbitrary<String>();
}

template <class Container>
auto elementOf(Container container) {
  using T = typename Container::value_type;
  return Gen<T>([container] { return T(container[detail::Draw::Below(container.size())]); });
}

template <class T, class... Others>
Gen<T> element(T first, Others... others) {
  return elementOf(std::vector<T>{std::move(first), T(std::move(others))...});
}

template <class T>
Gen<T> weightedElement(std::initializer_list<std::pair<size_t, T>> weighted) {
  std::vector<T> choices;
  for (const auto& [weight, value] : weighted) choices.insert(choices.end(), weight, value);
  return elementOf(std::move(choices));
}

template <class T>
Gen<T> just(T value) {
  return Gen<T>([value] { return value; });
}

template <class T, class... Others>
Gen<T> oneOf(Gen<T> first, Others... others) {
  return Gen<T>([choices = std::vector<Gen<T>>{first, others...}] {
    return *choices[detail::Draw::Below(choices.size())];
  });
}

template <class T, class Mapper>
auto map(Gen<T> source, Mapper mapper) {
  using Result = std::invoke_result_t<Mapper, T>;
  return Gen<Result>([source, mapper] { return mapper(*source); });
}

template <class T, class Mapper>
auto mapcat(Gen<T> source, Mapper mapper) {
  using Result = typename std::invoke_result_t<Mapper, T>::Value;
  return Gen<Result>([source, mapper] { return *mapper(*source); });
}

template <class T, class Predicate>
Gen<T> suchThat(Gen<T> source, Predicate predicate) {
  return Gen<T>([source, predicate] {
    T value = *source;
    while (!predicate(value)) value = *source;
    return value;
  });
}

template <class T>
Gen<T> nonEmpty(Gen<T> source) {
  return Gen<T>([source] {
    int32_t& size = detail::Draw::Current()->Size;
    const int32_t before = size;
    T value = *source;
    for (; value.empty(); value = *source) ++size;  // at size 0 nothing else could come
    size = before;
    return value;
  });
}

}  // namespace gen

namespace detail {

template <class Class, class Result, class... Arguments>
void CallWithDraws(const Class& property, Result (Class::*)(Arguments...) const) {
  // Braces draw the values from left to right.
  std::apply(property, std::tuple<std::decay_t<Arguments>...>{*gen::arbitrary<std::decay_t<Arguments>>()...});
}

}  // namespace detail

/// Tries a property whose arguments, if it has any, are drawn; false, with a report, where it does not hold.
template <class Property>
bool check(const std::string& szDescription, const Property& property) {
  constexpr int32_t wanted = 100;
  constexpr int32_t patience = 10;
  detail::Draw draw;
  draw.Random.seed(std::hash<std::string>()(szDescription) | 1U);
  detail::Draw::Current() = &draw;
  bool boolHolds = true;
  for (int32_t lDone = 0, lTried = 0; boolHolds && lDone < wanted; ++lTried) {
    if (lTried == wanted * patience) {
      std::cerr << szDescription << ": gave up after " << lDone << " cases that meet the precondition\n";
      boolHolds = false;
      break;
    }
    draw.Size = lDone;
    try {
      detail::CallWithDraws(property, &Property::operator());
      ++lDone;
    } catch (const detail::Discarded&) {
      continue;
    } catch (const std::exception& failure) {
      std::cerr << szDescription << ", case " << lDone << ": " << failure.what() << "\n";
      boolHolds = false;
    }
  }
  detail::Draw::Current() = nullptr;
  return boolHolds;
}

template <class Property>
bool check(const Property& property) {
  return check(std::string(), property);
}

}  // namespace rc

#define RC_ASSERT(condition) ::rc::detail::Require((condition), #condition, __FILE__, __LINE__)
#define RC_PRE(condition)                              \
  do {                                                 \
    if (!(condition)) throw ::rc::detail::Discarded(); \
  } while (false)
#define RC_CLASSIFY(condition, name) ::rc::detail::Draw::Current()->Classes[name] += (condition) ? 1 : 0
