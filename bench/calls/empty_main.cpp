// A program that does nothing, linked with the libraries that the client needs: what any such program costs.
int main() {
  return 0;
}
