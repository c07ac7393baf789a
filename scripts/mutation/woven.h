// Comes first in every source into which mutants are woven. Each helper does what its name says, or, where the mutant
// of its number is the chosen one, what stands beside it. Comparisons are inlined always: a constant of a class that is
// compared has no address unless somebody asks for it.
#pragma once

namespace panelkitMutants {

bool isChosen(int mutant) noexcept;

template <typename A, typename B>
__attribute__((always_inline)) inline bool less(int mutant, const A &a, const B &b) // or <=
{
    return isChosen(mutant) ? a <= b : a < b;
}

template <typename A, typename B>
__attribute__((always_inline)) inline bool lessEqual(int mutant, const A &a, const B &b) // or <
{
    return isChosen(mutant) ? a < b : a <= b;
}

template <typename A, typename B>
__attribute__((always_inline)) inline bool greater(int mutant, const A &a, const B &b) // or >=
{
    return isChosen(mutant) ? a >= b : a > b;
}

template <typename A, typename B>
__attribute__((always_inline)) inline bool greaterEqual(int mutant, const A &a, const B &b) // or >
{
    return isChosen(mutant) ? a > b : a >= b;
}

template <typename A, typename B>
__attribute__((always_inline)) inline bool equal(int mutant, const A &a, const B &b) // or !=
{
    return isChosen(mutant) ? a != b : a == b;
}

template <typename A, typename B>
__attribute__((always_inline)) inline bool unequal(int mutant, const A &a, const B &b) // or ==
{
    return isChosen(mutant) ? a == b : a != b;
}

template <typename A, typename B>
auto plus(int mutant, A a, B b) -> decltype(a + b) // or -
{
    return isChosen(mutant) ? a - b : a + b;
}

template <typename A, typename B>
auto minus(int mutant, A a, B b) -> decltype(a - b) // or +
{
    return isChosen(mutant) ? a + b : a - b;
}

template <typename A, typename B>
auto times(int mutant, A a, B b) -> decltype(a * b) // or /
{
    return isChosen(mutant) ? a / b : a * b;
}

template <typename A, typename B>
auto dividedBy(int mutant, A a, B b) -> decltype(a / b) // or *
{
    return isChosen(mutant) ? a * b : a / b;
}

template <typename A, typename B>
auto remainder(int mutant, A a, B b) -> decltype(a % b) // or *
{
    return isChosen(mutant) ? a * b : a % b;
}

template <typename A, typename B>
auto shiftLeft(int mutant, A a, B b) -> decltype(a << b) // or >>
{
    return isChosen(mutant) ? a >> b : a << b;
}

template <typename A, typename B>
auto shiftRight(int mutant, A a, B b) -> decltype(a >> b) // or <<
{
    return isChosen(mutant) ? a << b : a >> b;
}

template <typename A, typename B>
auto bitAnd(int mutant, A a, B b) -> decltype(a & b) // or |
{
    return isChosen(mutant) ? a | b : a & b;
}

template <typename A, typename B>
auto bitOr(int mutant, A a, B b) -> decltype(a | b) // or &
{
    return isChosen(mutant) ? a & b : a | b;
}

template <typename A, typename B>
A &plusAssign(int mutant, A &a, B b) // or -=
{
    return isChosen(mutant) ? a -= b : a += b;
}

template <typename A, typename B>
A &minusAssign(int mutant, A &a, B b) // or +=
{
    return isChosen(mutant) ? a += b : a -= b;
}

template <typename A, typename B>
A &timesAssign(int mutant, A &a, B b) // or /=
{
    return isChosen(mutant) ? a /= b : a *= b;
}

template <typename A, typename B>
A &divideAssign(int mutant, A &a, B b) // or *=
{
    return isChosen(mutant) ? a *= b : a /= b;
}

template <typename A>
A up(int mutant, A value) // or one more
{
    return isChosen(mutant) ? static_cast<A>(value + 1) : value;
}

} // namespace panelkitMutants
