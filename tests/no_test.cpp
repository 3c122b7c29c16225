// Carries the headers that tests share.
int main() {}
