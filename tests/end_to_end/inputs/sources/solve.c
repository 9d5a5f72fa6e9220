void solve(double* a, int n) {
#pragma omp parallel for
  for (int i = 0; i < n; ++i) {
#pragma omp critical(sum)
    a[0] += a[i];
  }
#pragma omp parallel
  {
#pragma omp barrier
#pragma omp single
    a[1] = 2;
  }
}
