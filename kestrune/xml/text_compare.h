#pragma once

// Comparisons for searches over the data.

/// Whether two texts are equal when all white space is ignored. False if either is null.
bool equalIgnoreSpace(const char *a, const char *b);

/// The same, also ignoring ASCII case.
bool equalNoCaseIgnoreSpace(const char *a, const char *b);

/// Whether two numbers differ by at most DBL_EPSILON, regardless of their size. False for a NaN.
bool equalDoubles(double a, double b);

/// Takes the traces of loading and discards them.
void traceMessage(const char *format, ...);
