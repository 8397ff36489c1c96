#pragma once

// Comparisons that the searches over the data use.

/// Whether two texts hold the same characters once all white space is left out. False if either is null.
bool equalIgnoreSpace(const char *a, const char *b);

/// The same without regard to ASCII case.
bool equalNoCaseIgnoreSpace(const char *a, const char *b);

/// Whether two numbers differ by DBL_EPSILON at most, whatever their size. Never with a NaN.
bool equalDoubles(double a, double b);

/// The place where traces of a load would go. Nothing is written.
void traceMessage(const char *format, ...);
